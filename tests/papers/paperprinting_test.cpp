#include "jet/error.h"
#include "papers/forms/paperprinting.h"
#include "papers/frame.h"

#include "data/settingsrow.h"
#include "shell/settings.h"

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

using namespace papers;
using namespace Qt::StringLiterals;

namespace {

Document twoCards()
{
    data::SettingsRow settings;
    settings.institution = u"ГБПОУ «Колледж»"_s;
    settings.address = u"нет"_s;
    settings.printHead = true;
    settings.headPost = u"Директор"_s;
    settings.headName = u"П. П. Петров"_s;
    settings.printResponsible = true;
    settings.responsiblePost = u"Заведующий отделением"_s;
    settings.responsibleName = u"С. С. Сидоров"_s;
    Document document{u"card"_s, u"Табель 21-ИС-1 2025-11"_s, {}};
    for (const QString& student : {u"Абрамова Е. С."_s, u"Волков П. А."_s, u"Ёлкин Я. Я."_s}) {
        Paper paper;
        paper.name = student;
        paper.landscape = false;
        paper.half = true;
        paper.title = u"ТАБЕЛЬ УСПЕВАЕМОСТИ"_s;
        paper.subtitle = u"Студент: "_s + student;
        paper.widths = {7, 100, 20};
        paper.head = {{heading(u"№"_s), heading(u"Дисциплина"_s), rotatedHeading(u"За месяц"_s)}};
        paper.body = {{number(1), text(u"Математика"_s), number(4.5, 2)},
                      {number(2), text(u"Физика"_s), hours(6, Ink::Unexcused)}};
        paper.notes = {u"Пропущено: всего 6"_s};
        addFrame(paper, settings);
        document.papers.push_back(paper);
    }
    return document;
}

QString textOfPdf(const QString& path)
{
    QProcess reader;
    reader.start(u"pdftotext"_s, {u"-layout"_s, path, u"-"_s});
    reader.waitForFinished();
    return QString::fromUtf8(reader.readAllStandardOutput());
}

} // namespace

TEST(PaperPrinting, ThePdfHoldsWhatThePaperSaysTwoHalvesAPage)
{
    const QTemporaryDir folder;
    shell::Settings settings(folder.filePath(u"a.ini"_s));
    const QString path = folder.filePath(u"Табель.pdf"_s);
    writePdf(twoCards(), path, settings);
    ASSERT_GT(QFileInfo(path).size(), 1000);
    if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty())
        GTEST_SKIP();
    const QString text = textOfPdf(path);
    for (const QString& expected :
         {u"ГБПОУ «Колледж»"_s, u"УТВЕРЖДАЮ"_s, u"Директор ______________ П. П. Петров"_s,
          u"Студент: Ёлкин Я. Я."_s, u"Математика"_s, u"4,50"_s, u"Пропущено: всего 6"_s,
          u"Заведующий отделением ______________ /С. С. Сидоров/"_s, u"Лист 1 из 2"_s,
          u"Лист 2 из 2"_s})
        EXPECT_TRUE(text.contains(expected)) << expected.toStdString() << "\n"
                                             << text.toStdString();
    EXPECT_FALSE(text.contains(u"нет"_s));
    EXPECT_EQ(text.count(u'\f'), 2); // pages
    EXPECT_THROW(writePdf(twoCards(), folder.filePath(u"нет/а.pdf"_s), settings), jet::Error);
}

TEST(PaperPrinting, ThePageSetupIsKeptForEachKindOfDocument)
{
    const QTemporaryDir folder;
    shell::Settings settings(folder.filePath(u"a.ini"_s));
    const Document document = twoCards();
    EXPECT_EQ(pageLayoutOf(document, settings).orientation(), QPageLayout::Portrait);
    EXPECT_EQ(pageLayoutOf(document, settings).margins(), QMarginsF(20, 10, 10, 10));
    settings.remember(u"print/card"_s, "9;1;15.5;5.0;6.0;7.0"); // A5
    EXPECT_EQ(pageLayoutOf(document, settings).orientation(), QPageLayout::Landscape);
    EXPECT_EQ(pageLayoutOf(document, settings).margins(), QMarginsF(15.5, 5, 6, 7));
    settings.remember(u"print/card"_s, "a stray text");
    EXPECT_EQ(pageLayoutOf(document, settings).pageSize().id(), QPageSize::A4);
}
