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
    ListFit fit(*this, m_host);
    (new frmFit(fit, std::move(source), this))->exec();
}

void frmList::mnuTimeFitSound_Click() {
    if (!m_host.FilmPosition())
        return ShowMessage(this, tr("Open a film first: its sound tells where the titles belong."));
    OpenFit(SoundOf(PathOf(QString::fromStdString(document().MediaFile))));
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
