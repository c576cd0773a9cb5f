#include "listeditor/frmList.h"

#include "dialogs/placement.h"
#include "listeditor/rowmodel.h"
#include "listeditor/titleview.h"
#include "model/numbers.h"
#include "platform/settings.h"
#include "platform/twips.h"

#include <QAction>
#include <QFontInfo>
#include <QHeaderView>
#include <QScrollBar>
#include <QToolBar>

#include <array>

namespace {

constexpr std::array<NumberSetting, RowModel::Columns> ColumnValues{"ListCol1", "ListCol2",
                                                                    "ListCol3"};
/// What the designed columns leave free for the scroll bar.
constexpr int BesideColumns = 30;

QFont LoadFont(const Settings& settings, QFont font) {
    font.setFamily(settings.String("ListFont", font.family()));
    font.setBold(settings.Dword("ListFontBold", font.bold() ? 1 : 0) != 0);
    font.setItalic(settings.Dword("ListFontItalic", font.italic() ? 1 : 0) != 0);
    const std::int32_t designed = qRound(QFontInfo(font).pointSizeF());
    if (const std::int32_t size = settings.Dword("ListFontSize", designed); size > 0)
        font.setPointSize(size);
    return font;
}

} // namespace

void frmList::LoadSettings() {
    const Settings settings;
    move(ToPixels(settings.Dword("ListLeft", ToTwips(x()))),
         ToPixels(settings.Dword("ListTop", ToTwips(y()))));
    resize(ToPixels(settings.Dword("ListWidth", ToTwips(width()))),
           ToPixels(settings.Dword("ListHeight", ToTwips(height()))));
    KeepReachable(*this);

    const bool toolbar = settings.Dword("Toolbar") != 0;
    m_actions.Entry("mnuViewToolbar")->setChecked(toolbar);
    TB->setVisible(toolbar);
    LoadColumns();
    LV->SetListFont(LoadFont(settings, LV->font()));
    constexpr std::int32_t NotStored = -1;
    if (settings.Dword("ListCol2", NotStored) == NotStored)
        LV->MakeRoomForTimes();
}

void frmList::LoadColumns() {
    const Settings settings;
    const std::int32_t designed = ToTwips(width() - BesideColumns);
    const std::int32_t half = RoundToLong(designed / 2.0);
    const std::int32_t quarter = RoundToLong(designed / 4.0);
    for (int column = 0; column < RowModel::Columns; ++column) {
        const std::int32_t width = settings.Dword(ColumnValues[static_cast<std::size_t>(column)],
                                                  column == RowModel::Text ? half : quarter);
        LV->setColumnWidth(column, ToPixels(width));
    }
}

void frmList::SaveSettings() {
    Settings settings;
    settings.SetDword("ListLeft", ToTwips(x()));
    settings.SetDword("ListTop", ToTwips(y()));
    settings.SetDword("ListWidth", ToTwips(width()));
    settings.SetDword("ListHeight", ToTwips(height()));
    for (int column = 0; column < RowModel::Columns; ++column)
        settings.SetDword(ColumnValues[static_cast<std::size_t>(column)],
                          ToTwips(LV->columnWidth(column)));
    settings.SetDword("Toolbar", m_actions.Entry("mnuViewToolbar")->isChecked() ? 1 : 0);
    const QFont font = LV->font();
    settings.SetString("ListFont", font.family());
    settings.SetDword("ListFontSize", qRound(QFontInfo(font).pointSizeF()));
    settings.SetDword("ListFontBold", font.bold() ? 1 : 0);
    settings.SetDword("ListFontItalic", font.italic() ? 1 : 0);
}
