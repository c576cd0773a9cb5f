#include "mainwindow/startingname.h"

std::string StartingName(std::string_view lastName) {
    return std::string(lastName.substr(0, lastName.find('.')));
}
