// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/commandline.h"

int main(int argc, char** argv)
{
    return kestro::clone::runCommand({argv + 1, argv + argc});
}
