#pragma once

#include "refbooks/catalogue.h"
#include "refbooks/forms/frmsprav.h"
#include "shell/forms/filechooser.h"
#include "shell/settings.h"
#include "tests/refbooks/bookfixture.h"
#include "tests/shell_forms/modal.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

#include <memory>
#include <vector>

// Gives the path that the test wants a list to be saved under.
class SavePath final : public shell::FileChooser
{
public:
    QString openJournal(const QString&) override { return {}; }
    QString openSource(const QString&, const QString&, const QString&) override { return {}; }
    QString newJournal(const QString&) override { return {}; }
    QString saveJournal(const QString&, const QString&) override { return {}; }
    QString saveTable(const QString& folder, const QString& name) override
    {
        suggested = folder + u'/' + name;
        return answer;
    }
    QString saveDocument(const QString&, const QString&) override { return {}; }
    QString fileOnDrive(const shell::DriveRequest&) override { return {}; }
    std::optional<shell::ArchivedCopy> archivedCopy(const shell::Archive&, const QString&,
                                                    shell::Prompt&) override
    {
        return {};
    }
    bool reveal(const QString&) override { return false; }

    QString answer;
    QString suggested;
};

// The list window of one book on an empty journal, worked with by keys and clicks.
class ListWindow : public BookFixture
{
protected:
    using BookFixture::BookFixture;

    void open(refbooks::Book book)
    {
        refbooks::BookListParts parts{session, settings, prompt,
                                      status,  chooser,  [this] { return folder.path(); }};
        parts.openAttendance = [this](const refbooks::WorkloadPlace& place) {
            attendance.push_back(place);
        };
        if (imports)
            parts.import = [this](refbooks::Book, const refbooks::ListFilter&, QWidget*) {
                add("SPGRUP", {{"NAIM", "Из файла"}});
                return true;
            };
        if (window)
            window->close();
        window = std::make_unique<refbooks::frmSPRAV>(book, parts);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        list = window->findChild<QTableView*>(QStringLiteral("lvList"));
        list->setFocus();
    }
    // What is typed and clicked in the dialog that the next command opens.
    template <class Steps>
    static void inDialog(Steps steps)
    {
        focused(); // waits now, so that nothing does between the command and its dialog
        inNextDialog<QDialog>([steps](QDialog& dialog) {
            ASSERT_TRUE(
                QTest::qWaitFor([&] { return dialog.isAncestorOf(QApplication::focusWidget()); }));
            steps(dialog);
        });
    }
    template <class Widget>
    Widget* named(const QString& name) const
    {
        return window->findChild<Widget*>(name);
    }
    QStringList shown() const
    {
        QStringList lines;
        for (int row = 0; row < list->model()->rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < list->model()->columnCount(); ++column)
                cells << list->model()->index(row, column).data().toString();
            lines << cells.join(u'|');
        }
        return lines;
    }
    // Of the selected rows, a column's texts.
    QStringList selected(int column = 0) const
    {
        QStringList texts;
        for (const QModelIndex& row : list->selectionModel()->selectedRows(column))
            texts << row.data().toString();
        return texts;
    }
    // Where the window system would send a key; it would activate the window when a dialog
    // has closed.
    static QWidget* focused()
    {
        for (QWidget* top : QApplication::topLevelWidgets())
            if (!QApplication::focusWidget() && top->isVisible())
                top->activateWindow();
        EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
        return QApplication::focusWidget();
    }
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(focused(), key, modifiers);
    }
    static void type(const QString& text)
    {
        for (const QChar letter : text)
            QTest::sendKeyEvent(QTest::Click, focused(),
                                static_cast<Qt::Key>(letter.toUpper().unicode()), QString(letter),
                                {});
    }
    void click(const QString& key) const
    {
        auto* action = named<QAction>(key);
        ASSERT_TRUE(action) << key.toStdString();
        QTest::mouseClick(named<QToolBar>(QStringLiteral("Toolbar1"))->widgetForAction(action),
                          Qt::LeftButton);
    }
    void clickHeader(int column) const
    {
        QHeaderView* header = list->horizontalHeader();
        QTest::mouseClick(
            header->viewport(), Qt::LeftButton, {},
            QPoint(header->sectionViewportPosition(column) + 10, header->height() / 2));
    }
    bool enabled(const QString& key) const { return named<QAction>(key)->isEnabled(); }
    QString count() const { return named<QLabel>(QStringLiteral("lblCount"))->text(); }

    QTemporaryDir folder;
    shell::Settings settings{folder.filePath(QStringLiteral("settings.ini"))};
    SavePath chooser;
    bool imports = false;
    std::vector<refbooks::WorkloadPlace> attendance;
    std::unique_ptr<refbooks::frmSPRAV> window;
    QTableView* list = nullptr;
};
