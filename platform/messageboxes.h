#pragma once

#include <QString>
#include <QStringList>

class QWidget;

/// Modal message boxes (real `QMessageBox`es) under the program's name. Line
/// breaks in the texts are line feeds.
enum class MessageIcon { None, Exclamation, Question, Critical };

/// `details` stand below the text.
void ShowMessage(QWidget* parent, const QString& text, MessageIcon icon = MessageIcon::None,
                 const QString& details = {});
/// The number of the chosen one of these button texts, from 0; the last one when the box
/// is closed otherwise. Nothing is chosen by Enter but the first.
int AskChoice(QWidget* parent, const QString& text, const QStringList& choices);

enum class Decision { Yes, No, None };
/// A question with Yes, which Enter takes, and No. Escape and the close box decide nothing.
Decision AskDecision(QWidget* parent, const QString& text);
/// The same where deciding nothing means No.
bool AskYesNo(QWidget* parent, const QString& text, MessageIcon icon = MessageIcon::None);
