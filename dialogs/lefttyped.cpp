#include "dialogs/lefttyped.h"

#include "platform/messageboxes.h"

#include <QString>

std::optional<Draft> GoOnTyping(Document& document, std::int32_t title, QWidget* parent) {
    std::optional<Draft> left = document.TakeLeft(title);
    if (left && !AskYesNo(parent,
                          QStringLiteral("You were changing this title when the program ended.\n"
                                         "Go on with what you had typed?"),
                          MessageIcon::Question))
        left.reset();
    return left;
}
