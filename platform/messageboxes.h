#pragma once

#include <QString>

class QWidget;

/// Modal message boxes (real `QMessageBox`es) under the program's name. Line
/// breaks in the texts are line feeds.
enum class MessageIcon { None, Exclamation, Question, Critical };

/// `details` stand below the text.
void ShowMessage(QWidget* parent, const QString& text, MessageIcon icon = MessageIcon::None,
                 const QString& details = {});
/// Yes and No; anything but Yes counts as No.
bool AskYesNo(QWidget* parent, const QString& text, MessageIcon icon = MessageIcon::None);
