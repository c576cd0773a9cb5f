#pragma once

#include <QApplication>

/// The program's application object: names, icon, number format, and the gate that
/// keeps errors of handlers out of the event loop.
class Application : public QApplication {
    Q_OBJECT

  public:
    Application(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;
};
