#include "dialogs/fitsources.h"
#include "dialogs/frmFit.h"
#include "formats/format.h"
#include "listeditor/frmList.h"
#include "listeditor/listfit.h"
#include "platform/commondialogs.h"
#include "platform/messageboxes.h"
#include "platform/paths.h"
#include "platform/settings.h"

void frmList::OpenFit(FitSource source) {
    if (Subt().Count() == 0)
        return;
    ListFit fit(this, m_host);
    (new frmFit(fit, std::move(source), this))->exec();
}

void frmList::mnuTimeFitSound_Click() {
    if (auto sound = m_host.FilmSound())
        return OpenFit(std::move(*sound));
    ShowMessage(this, m_host.FilmPosition()
                          ? tr("The film has no sound that titles could be fitted to.")
                          : tr("Open a film first: its sound tells where the titles belong."));
}

void frmList::mnuTimeFitFile_Click() {
    CommonDialog dialog;
    dialog.Title = tr("Fit to the titles of");
    dialog.Filter = QString::fromStdString(FormatFilter());
    dialog.FileMustExist = true;
    if (dialog.ShowOpen(this))
        OpenFit(TitlesOf(PathOf(dialog.FileName), Settings().String("CodePage").toStdString(),
                         document().FrameRate));
}
