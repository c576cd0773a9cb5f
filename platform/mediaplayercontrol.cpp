#include "platform/mediaplayercontrol.h"

MediaPlayerControl::MediaPlayerControl(Player& /*player*/, QWidget* parent)
    : QWidget(parent) {}

MediaPlayerControl::~MediaPlayerControl() = default;
