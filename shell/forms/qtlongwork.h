#pragma once

#include "shell/files/longwork.h"

namespace shell {

// Runs the work in another thread. Until half a second has passed nothing is shown and what
// the user does waits; then a box shows how far it is and can cancel it.
class QtLongWork final : public LongWork
{
public:
    void run(const QString& title,
             const std::function<void(const Progress& progress)>& body) override;
};

} // namespace shell
