// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/commandline.h"

#include "clone/backup.h"
#include "clone/blockdevice.h"
#include "clone/customcommands.h"
#include "clone/failure.h"
#include "clone/infocommand.h"
#include "clone/restore.h"
#include "clone/verify.h"
#include "clone/version.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <new>
#include <string_view>

namespace kestro::clone {

namespace {

constexpr const char* helpText = R"(Usage:
  kestro-clone --tui DEVICE IMAGE     back up a partition or a disk into an image
  kestro-clone --tui IMAGE DEVICE     restore an image to a partition or a disk
  kestro-clone --kim-info IMAGE       tell what an image holds, or "invalid file"
  kestro-clone --verify IMAGE         check every byte of an image
  kestro-clone --write-custom-file kim://IMAGE/NAME FILE
  kestro-clone --read-custom-file kim://IMAGE/NAME FILE
  kestro-clone --help | --version

Options:
  --rescue   with --tui: go on over places that cannot be read, and record them
  --json     with --kim-info: print JSON

The exit status is 0 only when everything was done and checked; kestro-clone(1) lists the others.
)";

/// The options and operands of one call.
struct Call
{
    bool json = false;
    bool rescue = false;
    std::vector<std::string> operands;
};

void runTui(const Call& call)
{
    const std::string& from = call.operands[0];
    const std::string& to = call.operands[1];
    const ReadErrors readErrors = call.rescue ? ReadErrors::Rescue : ReadErrors::Fail;
    const bool fromDevice = isBlockDevice(from);
    const bool toDevice = isBlockDevice(to);
    if (fromDevice == toDevice) {
        throw Failure(ExitCode::Refused,
            fromDevice ? "both " + from + " and " + to + " are devices"
                       : "neither " + from + " nor " + to + " is a device");
    }
    fromDevice ? backUp(from, to, readErrors) : restore(from, to, readErrors);
}

using Run = int (*)(const Call& call);

struct CommandRow
{
    std::string_view name;
    std::size_t operandCount;
    bool takesJson;
    bool takesRescue;
    Run run;
};

constexpr std::array commands{
    CommandRow{"--tui", 2, false, true, [](const Call& call) { return runTui(call), 0; }},
    CommandRow{"--kim-info", 1, true, false, [](const Call& call) { return printInfo(call.operands[0], call.json); }},
    CommandRow{"--verify", 1, false, false, [](const Call& call) { return verifyImage(call.operands[0]), 0; }},
    CommandRow{"--write-custom-file", 2, false, false,
        [](const Call& call) { return writeCustomFile(call.operands[0], call.operands[1]), 0; }},
    CommandRow{"--read-custom-file", 2, false, false,
        [](const Call& call) { return readCustomFile(call.operands[0], call.operands[1]), 0; }},
    CommandRow{"--help", 0, false, false, [](const Call&) { return std::fputs(helpText, stdout) < 0 ? 1 : 0; }},
    CommandRow{"--version", 0, false, false,
        [](const Call&) { return std::printf("kestro-clone %s\n", programVersion) < 0 ? 1 : 0; }},
};

[[noreturn]] void throwUsage(const std::string& reason)
{
    throw Failure(ExitCode::Usage, reason + "; see kestro-clone --help");
}

const CommandRow& commandNamed(const std::string& name)
{
    const auto row =
        std::find_if(commands.begin(), commands.end(), [&](const CommandRow& r) { return r.name == name; });
    if (row == commands.end()) {
        throwUsage("unknown command " + name);
    }
    return *row;
}

/// Options may stand before and behind the command.
int dispatch(const std::vector<std::string>& arguments)
{
    Call call;
    const CommandRow* command = nullptr;
    for (const std::string& argument : arguments) {
        if (argument == "--json" || argument == "--rescue") {
            (argument == "--json" ? call.json : call.rescue) = true;
        } else if (command == nullptr) {
            command = &commandNamed(argument);
        } else {
            call.operands.push_back(argument);
        }
    }
    if (command == nullptr) {
        throwUsage("nothing to do");
    }
    if ((call.json && !command->takesJson) || (call.rescue && !command->takesRescue)) {
        throwUsage(std::string(command->name) + " has no such option");
    }
    if (call.operands.size() != command->operandCount) {
        throwUsage(std::string(command->name) + " needs " + std::to_string(command->operandCount) + " operands");
    }
    return command->run(call);
}

int failed(ExitCode code, const std::string& sentence)
{
    std::fprintf(stderr, "kestro-clone: %s\n", oneLine(sentence).c_str());
    return static_cast<int>(code);
}

} // namespace

int runCommand(const std::vector<std::string>& arguments)
{
    try {
        return dispatch(arguments);
    } catch (const Failure& failure) {
        return failed(failure.code(), failure.what());
    } catch (const std::bad_alloc&) {
        return failed(ExitCode::Internal, "not enough memory");
    } catch (const std::exception& error) {
        return failed(ExitCode::Internal, error.what());
    }
}

} // namespace kestro::clone
