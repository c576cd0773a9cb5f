#include "dialogs/chosentitles.h"

#include "editing/numberstext.h"
#include "platform/messageboxes.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

ChosenTitles::ChosenTitles(TitleList& list, const QString& verb, QPushButton* cmdOK,
                           QWidget* parent)
    : QWidget(parent)
    , lblTitles(new QLabel(this))
    , cmdSelectAll(new QPushButton(tr("Select &all"), this))
    , m_list(list)
    , m_verb(verb)
    , m_cmdOK(cmdOK)
    , m_numbers(list.SelectedRows()) {
    lblTitles->setObjectName("lblTitles");
    cmdSelectAll->setObjectName("cmdSelectAll");
    cmdSelectAll->setAutoDefault(false);
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(12);
    line->addWidget(lblTitles, 1);
    line->addWidget(cmdSelectAll);
    connect(cmdSelectAll, &QPushButton::clicked, this, &ChosenTitles::cmdSelectAll_Click);
    Show();
}

void ChosenTitles::cmdSelectAll_Click() {
    m_list.SelectAll();
    m_numbers = m_list.SelectedRows();
    Show();
}

QString ChosenTitles::NoneChosen() const {
    return m_numbers.empty() ? tr("No title is selected in the list.") : QString();
}

bool ChosenTitles::MayMap(QWidget* window, const TimeMap& map, const QString& doubt) const {
    if (m_numbers.empty()) {
        ShowMessage(window, NoneChosen(), MessageIcon::Exclamation);
        return false;
    }
    if (!CanBeShown(m_list.document().Subt, m_numbers, map)) {
        ShowMessage(window, tr("That would move titles beyond what can be shown."),
                    MessageIcon::Exclamation);
        return false;
    }
    return doubt.isEmpty() ||
           AskYesNo(window, doubt + "\n\n" + tr("Go on all the same?"), MessageIcon::Question);
}

void ChosenTitles::Show() {
    const std::int32_t count = m_list.RowCount();
    const QString whyNot = NoneChosen();
    lblTitles->setText(
        !whyNot.isEmpty()
            ? whyNot
            : tr("%1 %2").arg(m_verb, QString::fromStdString(NumbersText(m_numbers, count))));
    cmdSelectAll->setEnabled(m_numbers.size() < static_cast<std::size_t>(count));
    // Without any title there is nothing to explain: OK only closes.
    m_cmdOK->setEnabled(!m_numbers.empty() || count == 0);
    m_cmdOK->setToolTip(m_cmdOK->isEnabled() ? QString() : whyNot);
}
