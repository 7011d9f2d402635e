#pragma once

#include "refbooks/bookfilter.h"
#include "refbooks/workloadplace.h"
#include "shell/forms/journalactions.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace sheets {
struct Table;
}
namespace shell {
class FileChooser;
class Prompt;
class Session;
class Settings;
class StatusLine;
} // namespace shell

namespace refbooks {

class BookListModel;
class BookWidths;
enum class RecordMode;

namespace Ui {
class frmSPRAV;
}

// What the list windows work with; all of it outlives them. Requires an open journal.
struct BookListParts
{
    shell::Session& session;
    shell::Settings& settings;
    shell::Prompt& prompt;
    shell::StatusLine& status;
    shell::FileChooser& chooser;
    // Where exported lists go. May throw.
    std::function<QString()> documentsFolder;
    // Opens the attendance journal there; without it the command is disabled.
    std::function<void(const WorkloadPlace&)> openAttendance = {};
    // Brings rows into the book from outside, true when rows may have changed; without it the
    // command is disabled.
    std::function<bool(Book, const ListFilter&, QWidget* parent)> import = {};
};

// The list of a reference book: its rows, the filter above them, and the commands of the
// book's toolbar.
class frmSPRAV final : public shell::JournalActions
{
    Q_OBJECT

public:
    // Throws jet::Error when the filter cannot be filled.
    frmSPRAV(Book book, const BookListParts& parts, QWidget* parent = nullptr);
    ~frmSPRAV() override;

    Book book() const { return m_book; }

    bool available(shell::JournalAction action) const override;
    void run(shell::JournalAction action) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    using Command = void (frmSPRAV::*)();
    static Command commandOf(std::string_view key);

    void setUpList();
    void setUpCommands();
    QAction* addCommand(std::string_view key, const QString& text);
    void addListCommand(const QString& name, const QString& text, const QString& shortcut,
                        Command command);
    void listen();

    void showFilter();
    void firstChosen(int position);
    void secondChosen(int position);
    void narrow(const QString& line);
    // Reads the list anew and goes to the row of the key, else to where the cursor was.
    void refill(std::optional<std::int64_t> key = {});
    void goToKey(std::optional<std::int64_t> key, int otherwise);
    void showStored(std::int64_t key);
    void showCount();
    void refreshCommands();
    void leaveJournal();

    std::vector<std::int64_t> selectedKeys() const;
    std::optional<std::int64_t> currentKey() const;
    void openRecord(RecordMode mode, std::int64_t key);

    void addRecord();
    void editRecord();
    void copyRecord();
    void deleteRecords();
    void copyWorkload();
    void clearWorkload();
    void linkWorkload();
    void analyseWorkload();
    void openAttendance();
    void importRows();
    void refresh();
    void exportRows();
    void exportTable(const sheets::Table& table);
    void copyRows();
    void copyRowsWithHeads();
    void copyText(bool withHeads);

    Book m_book;
    BookListParts m_parts;
    std::unique_ptr<Ui::frmSPRAV> ui;
    BookFilter m_filter;
    BookListModel* m_model = nullptr;
    BookWidths* m_widths = nullptr;
};

} // namespace refbooks
