#include "dialogs/frmEdit.h"

#include "dialogs/lefttyped.h"
#include "dialogs/placement.h"
#include "model/times.h"
#include "platform/errorgate.h"
#include "platform/messageboxes.h"
#include "platform/settings.h"
#include "platform/titletext.h"
#include "platform/twips.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>

namespace {

constexpr std::int32_t MinimumHeight = 2565;
constexpr std::int32_t MinimumWidth = 5000;
constexpr std::int32_t DesignHeight = 3900;
constexpr std::int32_t DesignWidth = 7350;
constexpr std::int32_t GapBelowText = 105;

/// Between two texts that have to fit.
void SetWidths(QLineEdit* box, const char* shortText, const char* longText) {
    const QFontMetrics metrics = box->fontMetrics();
    box->setMinimumWidth(metrics.horizontalAdvance(QLatin1String(shortText)) + 14);
    box->setMaximumWidth(metrics.horizontalAdvance(QLatin1String(longText)) + 20);
}

void AppendToBox(QPlainTextEdit& box, const QString& text) {
    QTextCursor end(box.document());
    end.movePosition(QTextCursor::End);
    end.insertText(text);
}

} // namespace

frmEdit::frmEdit(TitleList& list, QWidget* parent)
    : ListDialog(list, parent, "frmEdit", "Edit subtitle")
    , txtSubt(Named<TitleBox>("txtSubt", this))
    , PB(Named<QWidget>("PB", this))
    , txtStart(Named<QLineEdit>("txtStart", PB))
    , txtDuration(Named<QLineEdit>("txtDuration", PB))
    , cmdB(NewButton("cmdB", "<&b>", PB))
    , cmdI(NewButton("cmdI", "<&i>", PB))
    , cmdOK(NewButton("cmdOK", "OK", PB))
    , cmdCancel(NewButton("cmdCancel", "Cancel", PB)) {
    LayOut();
    connect(txtSubt, &QPlainTextEdit::cursorPositionChanged, this, &frmEdit::UpdateTagButtons);
    connect(txtSubt, &QPlainTextEdit::selectionChanged, this, &frmEdit::UpdateTagButtons);
    connect(txtSubt, &QPlainTextEdit::textChanged, this, &frmEdit::UpdateTagButtons);
    connect(cmdB, &QPushButton::clicked, this, &frmEdit::cmdB_Click);
    connect(cmdI, &QPushButton::clicked, this, &frmEdit::cmdI_Click);
    connect(cmdOK, &QPushButton::clicked, this, [this] { Guarded([this] { cmdOK_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, &frmEdit::cmdCancel_Click);
    // Return alone is a further line of the text.
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* confirm = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key(key)), this);
        connect(confirm, &QShortcut::activated, cmdOK, &QPushButton::click);
    }
    Form_Load();
    connect(txtSubt, &QPlainTextEdit::textChanged, this, &frmEdit::KeepTyped);
    connect(txtStart, &QLineEdit::textChanged, this, &frmEdit::KeepTyped);
    connect(txtDuration, &QLineEdit::textChanged, this, &frmEdit::KeepTyped);
    GoOnWithLeft();
}

void frmEdit::LayOut() {
    txtSubt->setToolTip("Edit the subtitle text");
    txtSubt->setTabChangesFocus(true);
    txtSubt->setFrameShape(QFrame::NoFrame);
    txtStart->setToolTip("Edit the subtitle start point");
    txtDuration->setToolTip("Edit the subtitle duration");
    cmdOK->setToolTip("Save changes and return to list");
    cmdCancel->setToolTip("Cancel changes and return to list");
    cmdOK->setDefault(true);

    auto* start = Named<QLabel>("Label1", "Start:", PB);
    auto* duration = Named<QLabel>("Label2", "Duration:", PB);
    start->setBuddy(txtStart);
    duration->setBuddy(txtDuration);
    const QFontMetrics metrics = txtStart->fontMetrics();
    SetWidths(txtStart, "00:00:00,000", "-00:00:00,000");
    SetWidths(txtDuration, "00.00", "0000.000");
    for (QPushButton* mark : {cmdB, cmdI})
        mark->setFixedWidth(metrics.horizontalAdvance("</b>") + 24);

    auto* times = new QHBoxLayout;
    times->setSpacing(5);
    times->addWidget(start);
    times->addWidget(txtStart, 1000);
    times->addSpacing(4);
    times->addWidget(duration);
    times->addWidget(txtDuration, 1000);
    times->addStretch(1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdB);
    buttons->addWidget(cmdI);
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* bottom = new QVBoxLayout(PB);
    bottom->setContentsMargins(8, 0, 8, 8);
    bottom->setSpacing(8);
    bottom->addLayout(times);
    bottom->addLayout(buttons);
    PB->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);

    auto* form = new QVBoxLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    form->setSpacing(ToPixels(GapBelowText));
    form->addWidget(txtSubt, 1);
    form->addWidget(PB);
    // With a large font the controls need more than the usual minimum.
    setMinimumSize(minimumSizeHint().expandedTo({ToPixels(MinimumWidth), ToPixels(MinimumHeight)}));

    SetTabOrder({txtSubt, txtStart, txtDuration, cmdB, cmdI, cmdOK, cmdCancel});
    txtSubt->setFocus();
}

void frmEdit::Form_Load() {
    txtSubt->setFont(List().ListFont());
    PlaceBeside(*this, *List().Window());
    const Settings settings;
    resize(ToPixels(settings.Dword("SEWidth", DesignWidth)),
           ToPixels(settings.Dword("SEHeight", DesignHeight)));
    KeepOnScreen(*this);

    m_index = List().SelectedItem();
    txtSubt->Load(List().RowText(m_index));
    m_loadedStart = List().RowStart(m_index);
    m_loadedDuration = List().RowDuration(m_index);
    txtStart->setText(m_loadedStart);
    txtDuration->setText(m_loadedDuration);
    if (m_index > 0) {
        m_start = std::make_unique<TypedBox>(txtStart, TypedMoment);
        m_duration = std::make_unique<TypedBox>(txtDuration, TypedSeconds);
    }
    for (QWidget* box : std::initializer_list<QWidget*>{txtSubt, txtStart, txtDuration})
        box->setEnabled(m_index > 0);
    for (QWidget* mark : {cmdB, cmdI})
        mark->setEnabled(m_index > 0 && txtSubt->Whole());
    UpdateTagButtons();
}

void frmEdit::GoOnWithLeft() {
    const auto left = GoOnTyping(document(), m_index, List().Window());
    if (!left)
        return;
    if (txtSubt->Whole())
        txtSubt->setPlainText(TitleToQt(left->text));
    if (!left->start.empty())
        txtStart->setText(QString::fromStdString(left->start));
    if (!left->duration.empty())
        txtDuration->setText(QString::fromStdString(left->duration));
}

void frmEdit::KeepTyped() {
    const bool changed = txtSubt->Text() != List().RowText(m_index) ||
                         txtStart->text() != m_loadedStart ||
                         txtDuration->text() != m_loadedDuration;
    if (changed)
        document().Typing(Draft{m_index, Subt().Text(m_index), TitleFromQt(txtSubt->Text()),
                                txtStart->text().toStdString(), txtDuration->text().toStdString()});
    else
        document().Typing(std::nullopt);
}

void frmEdit::Form_Unload() {
    document().Typing(std::nullopt);
    Settings settings;
    settings.SetDword("SEWidth", ToTwips(width()));
    settings.SetDword("SEHeight", ToTwips(height()));
}

void frmEdit::UpdateTagButtons() {
    const QString text = txtSubt->document()->toRawText();
    const int caret = txtSubt->textCursor().selectionStart();
    m_open = MarksAtCaret(text.toStdString(),
                          static_cast<std::size_t>(text.left(caret).toUtf8().size()));
    cmdB->setText(m_open.bold ? "</&b>" : "<&b>");
    cmdI->setText(m_open.italic ? "</&i>" : "<&i>");
}

void frmEdit::InsertMark(const QString& mark) {
    QTextCursor caret = txtSubt->textCursor();
    caret.setPosition(caret.selectionStart());
    caret.insertText(mark);
    txtSubt->setTextCursor(caret);
    txtSubt->setFocus();
    UpdateTagButtons();
}

void frmEdit::cmdB_Click() {
    InsertMark(m_open.bold ? "</b>" : "<b>");
}

void frmEdit::cmdI_Click() {
    InsertMark(m_open.italic ? "</i>" : "<i>");
}

std::optional<frmEdit::Times> frmEdit::AskTimes() {
    const double ownStart = Subt().StartTime(m_index);
    const double ownEnd = Subt().EndTime(m_index);
    double start = ownStart;
    if (txtStart->text() != m_loadedStart) {
        const std::optional<double> typed = m_start->Ask(this);
        if (!typed)
            return std::nullopt;
        start = *typed;
    }
    if (txtDuration->text() == m_loadedDuration)
        return Times{start, start == ownStart ? ownEnd : start + (ownEnd - ownStart)};
    const std::optional<double> duration = m_duration->Ask(this);
    if (!duration)
        return std::nullopt;
    return Times{start, EndAfter(start, *duration)};
}

void frmEdit::cmdOK_Click() {
    if (m_index == 0)
        return Unload();
    const std::string typed = TitleFromQt(txtSubt->Text());
    const std::string text = txtSubt->Whole() ? WithClosingMarks(typed) : typed;
    if (text != typed)
        AppendToBox(*txtSubt, QString::fromStdString(text.substr(typed.size())));
    const std::optional<Times> times = AskTimes();
    if (!times)
        return;
    const auto [start, end] = *times;
    const std::string_view why = WhyNot(Subt(), m_index, start, end);
    if (!why.empty())
        return ShowMessage(this, QString::fromUtf8(why.data(), static_cast<int>(why.size())));
    if (StoreTitle(Subt(), m_index, text, start, end)) {
        document().SubtitlesChanged = true;
        List().SetRow(m_index, TitleToQt(text), start, RoundTime(end - start));
        List().ShowEdited(m_index);
    }
    Unload();
}

void frmEdit::cmdCancel_Click() {
    Unload();
}
