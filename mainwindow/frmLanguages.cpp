#include "mainwindow/frmLanguages.h"

#include <QLabel>

frmLanguages::frmLanguages(const MendOffer& offer, QWidget* parent)
    : ChoiceDialog(parent, "frmLanguages", tr("Languages"), QString::fromStdString(offer.question),
                   {tr("Language"), tr("Class"), tr("Titles")}) {
    Label1->setText(Label1->text() + '\n' +
                    tr("The others stay in the file, with their own times."));
    for (const MendedLanguage& language : offer.languages)
        AddLine({QString::fromStdString(language.name), QString::fromStdString(language.className),
                 QString::number(language.titles)});
    LinesAdded();
}
