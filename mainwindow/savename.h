#pragma once

#include <QString>

#include <optional>

class CommonDialog;
class QWidget;

/// Asks for the name to save under. The dialog opens in the document's folder, on its
/// name and the filter of its format; a document without a name is offered the dialog's
/// last name, cut before its first ".". A name that tells no format is refused, and
/// offered with the extension of the filter that was picked. Nothing: cancelled.
std::optional<QString> AskSaveName(QWidget* parent, CommonDialog& dialog, const QString& document);
