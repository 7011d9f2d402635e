#pragma once

#include <QCommandLinkButton>

namespace shell {

// A large button with a line of explanation. It draws its own focus ring: most styles show
// none on such buttons until the mouse is over them.
class StartButton final : public QCommandLinkButton
{
    Q_OBJECT

public:
    using QCommandLinkButton::QCommandLinkButton;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace shell
