#pragma once

class QMenuBar;

namespace shell {

class Wording;

// Turns every caption of the menu into the institution's words. The captions stand as they
// are in the college wording; where another wording changes one, its access key is chosen
// anew so that no two items of a menu share one that did not before.
void applyWording(const Wording& wording, QMenuBar& bar);

} // namespace shell
