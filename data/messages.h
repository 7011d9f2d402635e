#pragma once

#include <QString>

namespace data {

// What the data layer has to say to the user; shell::Prompt is the full set.
class Messages
{
public:
    virtual ~Messages() = default;
    virtual void critical(const QString& text) = 0;    // an operation was stopped
    virtual void information(const QString& text) = 0; // a notice
};

} // namespace data
