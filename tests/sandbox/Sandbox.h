// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QTest>

/// A root of its own for one test process, so that a test can use the product's real absolute paths.
///
/// The test program executes itself once more in its own mount namespace, on an overlay in memory over the host's root
/// (programs and libraries work; every change stays in memory and ends with the process). Private and empty in there:
/// "/run", "/media", "/tmp", "/home/kestro", "/lib/kestro-recovery-gui" and "/sys/firmware"; "/dev" holds no disk;
/// "/proc/cmdline" and "/proc/swaps" are files of the sandbox (ordinary ones: they have a size, other than the real
/// ones). What lies on other file systems of the host is not there, except the project's sources and build (read-only).
/// Without root it works in a user namespace: then "/usr" is the host's (read-only), "/etc" a copy, all else empty.
///
/// A test uses it as its main function:
/// @code
/// int main(int argc, char** argv)
/// {
///     return Sandbox::run<SomeTest>(argc, argv);
/// }
/// @endcode
namespace Sandbox {

/// Moves the process into the sandbox by executing the program again, and returns when it is inside. Where the host
/// allows no namespace at all it prints the reason and ends the process with exit code 77. Call it before anything
/// else: no thread may run yet.
/// @param argv the arguments of main()
void enter(char** argv);

/// Whether this process runs inside the sandbox. True only on the sandbox's own root, whatever the environment says.
[[nodiscard]] bool isInside();

/// Whether this process has root's rights over the machine's devices: false in a user namespace.
[[nodiscard]] bool isPrivileged();

/// Ends the process with a message unless isInside(). Whatever could harm the host calls it first.
void requireInside();

/// Empties the private folders other than "/tmp" and gives "/proc/cmdline", "/proc/swaps" and "/sys/firmware" their
/// first content: for the start of each test function.
void reset();

/// A new empty folder with an absolute path; another one with each call.
[[nodiscard]] QString freshFolder();

/// Writes a file of the sandbox anew, with the folders above it. Ends the process when that fails.
void writeFile(const QString& path, const QByteArray& content);

/// The content of a file; empty when it cannot be read.
[[nodiscard]] QByteArray readFile(const QString& path);

/// Sets the content of "/proc/cmdline". At first it is "quiet" and a newline.
void setKernelCommandLine(const QByteArray& content);

/// Sets the content of "/proc/swaps". At first it is the heading line only.
void setSwaps(const QByteArray& content);

/// Makes or removes "/sys/firmware/efi". At first there is none.
void setUefi(bool uefi);

/// The body of a test's main function: enters the sandbox and runs the test with a core application.
template <class Test>
int run(int argc, char** argv)
{
    enter(argv);
    const QCoreApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace Sandbox
