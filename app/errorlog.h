#pragma once

#include "shell/service/logfile.h"

namespace app {

// While it lives, warnings and errors that the program or Qt report also go to the error log.
// One at a time.
class ErrorLog final
{
public:
    explicit ErrorLog(const QString& path = shell::logPath());
    ~ErrorLog();
    ErrorLog(const ErrorLog&) = delete;
    ErrorLog& operator=(const ErrorLog&) = delete;

private:
    shell::LogFile m_file;
};

} // namespace app
