#include "mainwindow/frmQuelmar.h"

#include "platform/mpvplayer.h"

frmQuelmar::frmQuelmar()
    : frmQuelmar(MakeMpvPlayer()) {}
