#include "app/application.h"

#include "platform/errorgate.h"
#include "platform/fontstyle.h"

#include <QIcon>

#include <clocale>

Application::Application(int& argc, char** argv)
    : QApplication(argc, argv) {
    // The toolkit takes over the user's locale; numbers in files and in the player
    // have a decimal point everywhere.
    std::setlocale(LC_NUMERIC, "C");
    setStyle(new FontStyle);
    setApplicationName("quelmar");
    setApplicationVersion(QUELMAR_VERSION);
    setDesktopFileName("quelmar");
    QIcon icon;
    for (const char* size : {"32", "64", "256"})
        icon.addFile(QStringLiteral(":/icons/quelmar-%1.png").arg(QLatin1String(size)));
    setWindowIcon(icon);
}

bool Application::notify(QObject* receiver, QEvent* event) {
    bool handled = false;
    Guarded([&] { handled = QApplication::notify(receiver, event); });
    return handled;
}
