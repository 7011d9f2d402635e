#pragma once

#include <QObject>
#include <QString>

class QWidget;

namespace shell {

// Lets a journal file be opened by dropping it on a window.
class FileDrop final : public QObject
{
    Q_OBJECT

public:
    // `window` becomes the parent.
    explicit FileDrop(QWidget& window);
    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    // Of several files the first one; comes after the drop has been answered.
    void dropped(const QString& path);
};

} // namespace shell
