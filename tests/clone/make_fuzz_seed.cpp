// SPDX-License-Identifier: GPL-3.0-or-later
// Writes the sample image as an input of the fuzz target: make_fuzz_seed FILE.
#include "clone/imagesamples.h"

#include <cstdio>
#include <fstream>
#include <string>

int main(int argc, char** argv)
{
    if (argc != 2) {
        return 2;
    }
    const std::string sample = makeSampleImage(std::string(argv[1]) + ".kim");
    std::ofstream(argv[1], std::ios::binary) << '\7' << std::ifstream(sample, std::ios::binary).rdbuf();
    return std::remove(sample.c_str());
}
