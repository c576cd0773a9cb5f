#include "listeditor/frmFind.h"

#include "dialogs/placement.h"
#include "platform/errorgate.h"
#include "platform/messageboxes.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>

namespace {

std::string LowerCase(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))
        .toLower()
        .toStdString();
}

} // namespace

frmFind::frmFind(TitleList& list, QWidget* parent)
    : ListDialog(list, parent, "frmFind", "Find title")
    , cmdExit(NewButton("cmdExit", "&Close", this))
    , cmdNext(NewButton("cmdNext", "Find &Next", this))
    , cmdSearch(NewButton("cmdSearch", "Find &First", this))
    , optAny(Named<QRadioButton>("optAny", "Any word", this))
    , optExact(Named<QRadioButton>("optExact", "Exact phrase", this))
    , optAll(Named<QRadioButton>("optAll", "All words", this))
    , txtFind(Named<QLineEdit>("txtFind", this))
    , m_search(LowerCase) {
    LayOut();
    connect(cmdSearch, &QPushButton::clicked, this,
            [this] { Guarded([this] { cmdSearch_Click(); }); });
    connect(cmdNext, &QPushButton::clicked, this, [this] { Guarded([this] { cmdNext_Click(); }); });
    connect(cmdExit, &QPushButton::clicked, this, &frmFind::cmdExit_Click);
    connect(txtFind, &QLineEdit::textChanged, this, &frmFind::txtFind_Change);
    connect(new QShortcut(Qt::Key_F3, this), &QShortcut::activated, this,
            [this] { Guarded([this] { cmdNext_Click(); }); });
    Form_Load();
}

void frmFind::LayOut() {
    auto* label = Named<QLabel>("Label1", "&Text contains:", this);
    label->setBuddy(txtFind);
    txtFind->setMinimumWidth(txtFind->fontMetrics().averageCharWidth() * 34);

    auto* modes = new QHBoxLayout;
    modes->setSpacing(14);
    for (QRadioButton* mode : {optAny, optExact, optAll})
        modes->addWidget(mode);
    modes->addStretch();

    auto* left = new QVBoxLayout;
    left->setSpacing(6);
    left->addWidget(label);
    left->addWidget(txtFind);
    left->addSpacing(6);
    left->addLayout(modes);
    left->addStretch();

    auto* buttons = new QVBoxLayout;
    buttons->setSpacing(6);
    for (QPushButton* button : {cmdSearch, cmdNext, cmdExit})
        buttons->addWidget(button);
    buttons->addStretch();

    auto* columns = new QHBoxLayout(this);
    columns->setContentsMargins(14, 12, 14, 12);
    columns->setSpacing(16);
    columns->addLayout(left, 1);
    columns->addLayout(buttons);

    SetTabOrder({txtFind, optAny, optExact, optAll, cmdSearch, cmdNext, cmdExit});
}

void frmFind::Form_Load() {
    document().FindOpen = true;
    optAll->setChecked(true);
    cmdSearch->setDefault(true);
    adjustSize();
    const QWidget& list = *List().Window();
    move(list.pos() + QPoint(list.width() - width() - 24, 24));
    KeepOnScreen(*this);
}

void frmFind::Form_Unload() {
    document().FindOpen = false;
}

void frmFind::Form_Deactivate() {
    // A message of its own takes the focus, but not the person's attention elsewhere.
    if (!m_showsMessage)
        hide();
}

bool frmFind::event(QEvent* event) {
    const bool done = ListDialog::event(event);
    if (event->type() == QEvent::WindowDeactivate)
        Form_Deactivate();
    return done;
}

void frmFind::Open() {
    show();
    raise();
    activateWindow();
    txtFind->setFocus();
    txtFind->selectAll();
}

FindMode frmFind::Mode() const {
    if (optAny->isChecked())
        return FindMode::AnyWord;
    return optExact->isChecked() ? FindMode::ExactPhrase : FindMode::AllWords;
}

bool frmFind::Show(TitleSearch::Result result) {
    if (result == TitleSearch::Result::Found)
        List().GoToTitle(m_search.Index());
    if (result != TitleSearch::Result::NoMatch)
        return true;
    m_showsMessage = true;
    const QPointer<frmFind> alive = this;
    ShowMessage(isVisible() ? this : List().Window(), "No match.");
    // The list editor may have been closed meanwhile, and this dialog with it.
    if (!alive)
        return false;
    m_showsMessage = false;
    cmdExit->setDefault(true);
    return false;
}

void frmFind::cmdSearch_Click() {
    if (Show(m_search.First(document().Subt, txtFind->text().toStdString(), Mode())))
        cmdNext->setDefault(true);
}

void frmFind::cmdNext_Click() {
    Show(m_search.Next(document().Subt, txtFind->text().toStdString(), Mode()));
}

void frmFind::cmdExit_Click() {
    Unload();
}

void frmFind::txtFind_Change() {
    cmdSearch->setDefault(true);
}
