// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/Application.h"
#include "mainwindow/frmMain.h"

int main(int argc, char* argv[])
{
    dip::Application app(argc, argv);
    dip::installWindowMessageBoxes();
    dip::frmMain window;
    window.show();
    return app.exec();
}
