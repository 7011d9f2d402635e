#pragma once

#include <QString>

#include <xlsxwriter.h>

#include <cstdint>
#include <functional>
#include <string>

// What every workbook that the program writes has in common.
namespace sheets {

inline constexpr std::uint8_t kPaperA4 = 9; // the format's number of the paper

// Throws jet::Error (Io) when the library refused.
void check(lxw_error error);

// What the format allows within a text.
std::string cellText(QString text);
// The text as a sheet's name, which may not be longer than 31 characters or hold some signs.
std::string sheetName(const QString& title);
// The text within a page's header, where "&" begins a code.
std::string headerText(const QString& text);

// Makes a workbook under the path. With `rowByRow` rows must be written in order and are not
// kept in memory. Throws jet::Error.
void writeBook(const QString& path, bool rowByRow,
               const std::function<void(lxw_workbook& book)>& fill);

} // namespace sheets
