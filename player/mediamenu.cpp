#include "player/mediamenu.h"

#include <QCoreApplication>
#include <QMenu>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>

namespace {

constexpr double Rates[] = {0.5, 0.75, 1, 1.25, 1.5, 2};
constexpr int VolumeStep = 10;
constexpr double Jumps[] = {-30, -5, 5, 30};

struct Shape {
    const char* text;
    double ratio;
};

constexpr Shape Shapes[] = {
    {QT_TRANSLATE_NOOP("MediaMenu", "As the film says"), 0},
    {"4:3", 4.0 / 3},
    {"16:9", 16.0 / 9},
    {"1.85:1", 1.85},
    {"2.35:1", 2.35},
};

bool Same(double a, double b) {
    return std::abs(a - b) < 0.001;
}

/// One action of the player's; afterwards the keyboard is the window's again.
QAction* Add(QMenu& menu, Player& player, const QString& text, std::function<void()> act) {
    QAction* action = menu.addAction(text);
    QObject::connect(action, &QAction::triggered, &player, [&player, act = std::move(act)] {
        act();
        emit player.Activated();
    });
    return action;
}

QAction* AddChoice(QMenu& menu, Player& player, const QString& text, bool chosen,
                   std::function<void()> act) {
    QAction* action = Add(menu, player, text, std::move(act));
    action->setCheckable(true);
    action->setChecked(chosen);
    return action;
}

void AddTransport(QMenu& menu, Player& player) {
    if (player.State() == Player::Playing)
        Add(menu, player, QMenu::tr("&Pause"), [&player] { player.Pause(); });
    else
        Add(menu, player, QMenu::tr("&Play"), [&player] { player.Play(); });
    Add(menu, player, QMenu::tr("&Stop"), [&player] { player.Stop(); });
    QMenu* go = menu.addMenu(QMenu::tr("&Go"));
    for (const double jump : Jumps) {
        const QString text = jump < 0 ? QMenu::tr("%1 s back") : QMenu::tr("%1 s forward");
        Add(*go, player, text.arg(std::abs(jump)), [&player, jump] {
            player.CurrentPosition(std::max(0.0, player.CurrentPosition() + jump));
        });
    }
    Add(*go, player, QMenu::tr("To the start"), [&player] { player.CurrentPosition(0); });
    Add(*go, player, QMenu::tr("To the end"),
        [&player] { player.CurrentPosition(player.Length()); });
}

void AddVolume(QMenu& menu, Player& player) {
    QMenu* volume = menu.addMenu(QMenu::tr("&Volume"));
    AddChoice(*volume, player, QMenu::tr("&Mute"), player.Muted(),
              [&player] { player.Muted(!player.Muted()); });
    Add(*volume, player, QMenu::tr("&Louder"),
        [&player] { player.Volume(player.Volume() + VolumeStep); });
    Add(*volume, player, QMenu::tr("&Quieter"),
        [&player] { player.Volume(player.Volume() - VolumeStep); });
}

void AddTracks(QMenu& menu, Player& player) {
    QMenu* tracks = menu.addMenu(QMenu::tr("&Audio track"));
    const QStringList names = player.AudioTracks();
    for (int i = 0; i < names.size(); ++i) {
        // A film's own text: no mnemonics in it.
        QString name = names[i];
        AddChoice(*tracks, player, name.replace(QLatin1Char('&'), QLatin1String("&&")),
                  player.AudioTrack() == i, [&player, i] { player.AudioTrack(i); });
    }
    tracks->setEnabled(!names.isEmpty());
}

void AddShapes(QMenu& menu, Player& player) {
    QMenu* shapes = menu.addMenu(QMenu::tr("Asp&ect"));
    for (const Shape& shape : Shapes)
        AddChoice(*shapes, player, QCoreApplication::translate("MediaMenu", shape.text),
                  Same(player.Aspect(), shape.ratio),
                  [&player, &shape] { player.Aspect(shape.ratio); });
}

} // namespace

QString RateText(double rate) {
    return QStringLiteral("%1x").arg(rate);
}

double FasterRate(double rate) {
    const auto* next = std::upper_bound(std::begin(Rates), std::end(Rates), rate);
    return next == std::end(Rates) ? rate : *next;
}

double SlowerRate(double rate) {
    const auto* here = std::lower_bound(std::begin(Rates), std::end(Rates), rate);
    return here == std::begin(Rates) ? rate : *std::prev(here);
}

void FillRateMenu(QMenu& menu, Player& player) {
    for (const double rate : Rates)
        AddChoice(menu, player, RateText(rate), Same(player.Rate(), rate),
                  [&player, rate] { player.Rate(rate); });
}

void FillMediaMenu(QMenu& menu, Player& player) {
    AddTransport(menu, player);
    menu.addSeparator();
    FillRateMenu(*menu.addMenu(QMenu::tr("&Rate")), player);
    AddVolume(menu, player);
    AddTracks(menu, player);
    AddShapes(menu, player);
}
