#include "refbooks/forms/frmcopyto.h"

#include "refbooks/catalogue.h"
#include "refbooks/forms/accesskeys.h"
#include "refbooks/worded.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace refbooks {

namespace {

// Frames the check boxes, whose outline styles draw too faintly on a dark ground.
class FramedChecks final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override
    {
        QStyledItemDelegate::paint(painter, option, index);
        QStyleOptionViewItem item = option;
        initStyleOption(&item, index);
        const QRect box =
            item.widget->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &item);
        painter->setPen(item.palette.color(QPalette::Text));
        painter->drawRect(box.adjusted(1, 1, -2, -2));
    }
};

} // namespace

frmCopyTo::frmCopyTo(std::vector<CopyTarget> groups, std::vector<CopyTarget> subgroups,
                     const shell::Wording& wording, QWidget* parent)
    : QDialog(parent)
    , m_groups(std::move(groups))
    , m_subgroups(std::move(subgroups))
    , m_wording(wording)
    , m_toGroups(new QRadioButton(worded(wording, u"В учебные группы"_s)))
    , m_toSubgroups(new QRadioButton(u"В подгруппы"_s))
    , m_prompt(new QLabel)
    , m_filter(new QLineEdit)
    , m_list(new QListWidget)
    , m_yes(new QPushButton(u"Да"_s))
{
    setObjectName(u"frmCopyTo"_s);
    setWindowTitle(u"Копирование нагрузки"_s);
    setUpLayout();
    connect(m_toGroups, &QRadioButton::toggled, this, &frmCopyTo::showTargets);
    connect(m_filter, &QLineEdit::textChanged, this, &frmCopyTo::narrow);
    connect(m_list, &QListWidget::itemChanged, this, &frmCopyTo::showChoice);
    m_toGroups->setChecked(true);
    resize(fontMetrics().averageCharWidth() * 64, fontMetrics().height() * 26);
    m_filter->setFocus();
}

void frmCopyTo::setUpLayout()
{
    m_toGroups->setObjectName(u"optGroups"_s);
    m_toSubgroups->setObjectName(u"optSubgroups"_s);
    const QStringList kinds =
        withAccessKeys({m_toGroups->text(), m_toSubgroups->text()}, u"нвс"_s); // taken below
    m_toGroups->setText(kinds.front());
    m_toSubgroups->setText(kinds.back());
    m_prompt->setObjectName(u"lblPrompt"_s);
    m_prompt->setWordWrap(true);
    m_list->setObjectName(u"lstTargets"_s);
    m_list->setAlternatingRowColors(true);
    m_list->setItemDelegate(new FramedChecks(m_list));
    m_yes->setObjectName(u"cmdYes"_s);
    m_yes->setDefault(true);
    auto* no = new QPushButton(u"Нет"_s);
    no->setObjectName(u"cmdNo"_s);
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(m_yes, QDialogButtonBox::AcceptRole);
    buttons->addButton(no, QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* column = new QVBoxLayout(this);
    column->addLayout(kindRow());
    column->addLayout(filterRow());
    column->addWidget(m_list);
    column->addWidget(m_prompt);
    column->addWidget(buttons);
}

QLayout* frmCopyTo::kindRow()
{
    auto* row = new QHBoxLayout;
    row->addWidget(m_toGroups);
    row->addWidget(m_toSubgroups);
    row->addStretch();
    return row;
}

QLayout* frmCopyTo::filterRow()
{
    m_filter->setObjectName(u"txtFilter"_s);
    m_filter->setClearButtonEnabled(true);
    auto* label = new QLabel(u"&Найти:"_s);
    label->setBuddy(m_filter);
    auto* all = new QPushButton(u"Выделить &все"_s);
    all->setObjectName(u"cmdAll"_s);
    all->setAutoDefault(false); // Enter is for "Да" alone
    connect(all, &QPushButton::clicked, this, [this] { tickShown(true); });
    auto* none = new QPushButton(u"&Снять все"_s);
    none->setObjectName(u"cmdNone"_s);
    none->setAutoDefault(false);
    connect(none, &QPushButton::clicked, this, [this] { tickShown(false); });
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_filter, 1);
    row->addWidget(all);
    row->addWidget(none);
    return row;
}

CopyTo frmCopyTo::to() const
{
    return m_toGroups->isChecked() ? CopyTo::Groups : CopyTo::Subgroups;
}

const std::vector<CopyTarget>& frmCopyTo::targets() const
{
    return to() == CopyTo::Groups ? m_groups : m_subgroups;
}

std::vector<CopyTarget> frmCopyTo::chosen() const
{
    std::vector<CopyTarget> ticked;
    for (int row = 0; row < m_list->count(); ++row)
        if (m_list->item(row)->checkState() == Qt::Checked)
            ticked.push_back(targets()[static_cast<std::size_t>(row)]);
    return ticked;
}

void frmCopyTo::showTargets()
{
    {
        const QSignalBlocker quiet(m_list);
        m_list->clear();
        for (const CopyTarget& target : targets()) {
            auto* item = new QListWidgetItem(target.name, m_list);
            item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
            item->setCheckState(Qt::Unchecked);
        }
        m_list->setCurrentRow(0);
    }
    m_list->setAccessibleName(to() == CopyTo::Groups ? bookTitle(Book::Groups, m_wording)
                                                     : u"Подгруппы"_s);
    narrow(m_filter->text());
    showChoice();
}

void frmCopyTo::narrow(const QString& part)
{
    for (int row = 0; row < m_list->count(); ++row) {
        QListWidgetItem* item = m_list->item(row);
        item->setHidden(!item->text().contains(part.trimmed(), Qt::CaseInsensitive));
    }
}

void frmCopyTo::tickShown(bool ticked)
{
    for (int row = 0; row < m_list->count(); ++row)
        if (!m_list->item(row)->isHidden())
            m_list->item(row)->setCheckState(ticked ? Qt::Checked : Qt::Unchecked);
}

void frmCopyTo::showChoice()
{
    const auto count = chosen().size();
    m_yes->setEnabled(count > 0);
    m_prompt->setText(count == 0 ? copyChoicePrompt(to(), m_wording)
                                 : copyConfirmPrompt() + u"\nВыбрано: %1"_s.arg(count));
}

} // namespace refbooks
