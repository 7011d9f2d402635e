#pragma once

#include "reports/forms/documentfiles.h"
#include "reports/forms/rankingchart.h"
#include "reports/ranking.h"
#include "shell/forms/journalactions.h"

#include <memory>
#include <optional>

class QChartView;
class QMenu;

namespace journals {
class FrozenTable;
}

namespace reports {

class RankingModel;

namespace Ui {
class LView;
}

// Compares the specialities over a period, and the groups of the one that is selected, in two
// lists and two charts. A click on a column's head draws that column.
class LView final : public shell::JournalActions
{
    Q_OBJECT

public:
    explicit LView(const DocumentParts& parts, QWidget* parent = nullptr);
    ~LView() override;

    bool available(shell::JournalAction action) const override;
    void run(shell::JournalAction action) override;

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    // A list with its chart.
    struct Half
    {
        RankingModel* model = nullptr;
        journals::FrozenTable* table = nullptr;
        QChartView* view = nullptr;
        std::optional<RankingChart> chart;
    };

    void setUpHalf(Half& half);
    void setUpMenu(Half& half);
    void setUpButtons();
    void restoreChoice();
    void rememberChoice();

    RankingRequest request() const;
    void compute();
    void showGroups();
    void draw(Half& half);
    void drawColumn(Half& half, int column);
    void sortBy(Half& half, int column, Qt::SortOrder order);
    void showState();
    std::optional<int> currentSpeciality() const;

    papers::Document document() const;
    void exportLists();
    void printLists();
    void printBothCharts();
    void savePicture(const Half& half, const QString& suffix);

    DocumentParts m_parts;
    DocumentFiles m_files;
    std::unique_ptr<Ui::LView> ui;
    Half m_specialities, m_groups;
    std::unique_ptr<const Ranking> m_ranking; // of what is shown
    std::optional<RankingRequest> m_shown;    // what it was computed from
    std::optional<std::int64_t> m_speciality; // whose groups are shown
};

} // namespace reports
