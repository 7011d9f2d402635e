#pragma once

#include "papers/paper.h"

namespace data {
struct SettingsRow;
}

namespace papers {

// Puts on the paper what all papers of an institution share: its name and address, the
// УТВЕРЖДАЮ block and the signature of the person responsible, as the options say. Signatures
// already there stand first.
void addFrame(Paper& paper, const data::SettingsRow& settings);

} // namespace papers
