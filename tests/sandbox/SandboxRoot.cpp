// SPDX-License-Identifier: GPL-3.0-or-later
#include "sandbox/SandboxRoot.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <utility>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace SandboxRoot {

namespace {

constexpr int exitSkipped = 77;
constexpr const char* scaffold = "/tmp";
const std::string host = std::string(ownFolder) + "/host";

bool privileged = false;

// Some hosts grant a user namespace but no mounts in it: without privileges a failing step is a reason to skip.
[[noreturn]] void fail(const std::string& step)
{
    std::printf("%s: sandbox: %s: %s\n", privileged ? "FAIL" : "SKIP", step.c_str(), std::strerror(errno));
    std::fflush(stdout);
    std::_Exit(privileged ? EXIT_FAILURE : exitSkipped);
}

void makeFolder(const std::string& path)
{
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error) {
        errno = error.value();
        fail("making " + path);
    }
}

void writeText(const std::string& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text << std::flush;
    if (!file) {
        fail("writing " + path);
    }
}

void mountAt(const std::string& source, const std::string& target, const char* type, unsigned long flags,
    const std::string& options = {})
{
    if (mount(source.c_str(), target.c_str(), type, flags, options.empty() ? nullptr : options.c_str()) != 0) {
        fail("mounting " + target);
    }
}

void mountMemory(const std::string& target, const std::string& options = "mode=755")
{
    makeFolder(target);
    mountAt("tmpfs", target, "tmpfs", 0, options);
}

// Not "bind": the function template of that name in namespace std would be the better match for strings.
void bindMount(const std::string& source, const std::string& target)
{
    mountAt(source, target, nullptr, MS_BIND | MS_REC);
}

void bindFile(const std::string& source, const std::string& target)
{
    if (!std::filesystem::exists(target)) {
        writeText(target, {});
    }
    bindMount(source, target);
}

void makeReadOnly(const std::string& target)
{
    // In a user namespace the flags that the mount already has must be given again.
    struct statvfs state = {};
    if (statvfs(target.c_str(), &state) != 0) {
        fail("looking at " + target);
    }
    unsigned long flags = MS_BIND | MS_REMOUNT | MS_RDONLY;
    const std::pair<unsigned long, unsigned long> kept[] = {
        {ST_NOSUID, MS_NOSUID}, {ST_NODEV, MS_NODEV}, {ST_NOEXEC, MS_NOEXEC}, {ST_RELATIME, MS_RELATIME}};
    for (const auto& [has, wanted] : kept) {
        flags |= (state.f_flag & has) != 0 ? wanted : 0;
    }
    mountAt("none", target, nullptr, flags);
}

bool unshareWithUser()
{
    const std::string user = std::to_string(geteuid());
    const std::string group = std::to_string(getegid());
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return false;
    }
    writeText("/proc/self/setgroups", "deny");
    writeText("/proc/self/uid_map", "0 " + user + " 1");
    writeText("/proc/self/gid_map", "0 " + group + " 1");
    return true;
}

void mountOverlay(const std::string& root)
{
    const std::string base = scaffold;
    makeFolder(base + "/upper");
    makeFolder(base + "/work");
    mountAt("overlay", root, "overlay", 0, "lowerdir=/,upperdir=" + base + "/upper,workdir=" + base + "/work");
}

// In a user namespace the host's mounts are locked together and root's folders cannot be written, so that no overlay
// works: programs and libraries are bound, settings copied, and every other folder is empty.
void composeRoot(const std::string& root)
{
    mountMemory(root);
    makeFolder(root + "/usr");
    bindMount("/usr", root + "/usr");
    makeReadOnly(root + "/usr");
    for (const char* folder : {"/etc", "/lib", "/opt", "/var", "/boot", "/root", "/proc", "/sys"}) {
        makeFolder(root + folder);
    }
    std::filesystem::create_directory_symlink("usr/bin", root + "/bin");
    std::filesystem::create_directory_symlink("usr/sbin", root + "/sbin");
    std::filesystem::create_directory_symlink("usr/lib64", root + "/lib64");
    // "/lib" is a folder of links, because the product's own one in there must be writable.
    for (const auto& entry : std::filesystem::directory_iterator("/usr/lib")) {
        std::filesystem::create_symlink(entry.path(), root + "/lib/" + entry.path().filename().string());
    }
    // What this user may not read stays out.
    for (const auto& entry : std::filesystem::directory_iterator("/etc")) {
        std::error_code unreadable;
        std::filesystem::copy(entry.path(), root + "/etc/" + entry.path().filename().string(),
            std::filesystem::copy_options::recursive | std::filesystem::copy_options::copy_symlinks, unreadable);
    }
}

std::string mountRoot()
{
    mountMemory(scaffold);
    std::string root = std::string(scaffold) + "/root";
    makeFolder(root);
    if (privileged) {
        mountOverlay(root);
    } else {
        composeRoot(root);
    }
    return root;
}

void changeRoot(const std::string& root)
{
    makeFolder(root + host);
    if (chdir(root.c_str()) != 0 || syscall(SYS_pivot_root, ".", (root + host).c_str()) != 0 || chdir("/") != 0) {
        fail("changing the root");
    }
}

void mountKernelViews()
{
    bindMount(host + "/proc", "/proc");
    bindMount(host + "/sys", "/sys");
    makeReadOnly("/sys");
}

void makeLink(const std::string& target, const std::string& link)
{
    if (symlink(target.c_str(), link.c_str()) != 0) {
        fail("linking " + link);
    }
}

// Nodes are bound and not made: a user namespace may not make them.
void mountDevices()
{
    mountMemory("/dev");
    for (const char* node : {"null", "zero", "full", "random", "urandom", "tty"}) {
        bindFile(host + "/dev/" + node, std::string("/dev/") + node);
    }
    for (const char* folder : {"/dev/pts", "/dev/mapper", "/dev/disk/by-uuid"}) {
        makeFolder(folder);
    }
    mountAt("devpts", "/dev/pts", "devpts", MS_NOSUID | MS_NOEXEC, "newinstance,ptmxmode=0666,mode=0620");
    mountMemory("/dev/shm", "mode=1777");
    makeLink("pts/ptmx", "/dev/ptmx");
    makeLink("/proc/self/fd", "/dev/fd");
    makeLink("/proc/self/fd/0", "/dev/stdin");
    makeLink("/proc/self/fd/1", "/dev/stdout");
    makeLink("/proc/self/fd/2", "/dev/stderr");
}

void mountPrivateFolders()
{
    for (const std::string folder : privateFolders) {
        mountMemory(folder, folder == "/tmp" ? "mode=1777" : "mode=755");
    }
    for (const std::string name : {"cmdline", "swaps"}) {
        std::string own = ownFolder;
        own.append("/").append(name);
        writeText(own, {});
        bindMount(own, "/proc/" + name);
    }
}

void bindKeptFolder(const std::string& path, int descriptor)
{
    if (!std::filesystem::exists(path) || std::filesystem::is_empty(path)) {
        makeFolder(path);
        bindMount("/proc/self/fd/" + std::to_string(descriptor), path);
        makeReadOnly(path);
    }
    close(descriptor);
}

// Opened before the scaffold hides a folder below "/tmp".
std::vector<int> openFolders(const std::vector<std::string>& folders)
{
    std::vector<int> descriptors;
    for (const std::string& folder : folders) {
        descriptors.push_back(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (descriptors.back() < 0) {
            fail("opening " + folder);
        }
    }
    return descriptors;
}

} // namespace

bool ownsInitialUserNamespace()
{
    std::ifstream map("/proc/self/uid_map");
    unsigned long inside = 1;
    unsigned long outside = 1;
    unsigned long count = 0;
    map >> inside >> outside >> count;
    return inside == 0 && outside == 0 && count == 0xFFFFFFFFUL;
}

bool unshareMounts()
{
    privileged = geteuid() == 0 && ownsInitialUserNamespace();
    return (geteuid() == 0 && unshare(CLONE_NEWNS) == 0) || unshareWithUser();
}

void build(const std::vector<std::string>& keptFolders)
{
    mountAt("none", "/", nullptr, MS_REC | MS_PRIVATE);
    const std::vector<int> descriptors = openFolders(keptFolders);
    changeRoot(mountRoot());
    mountKernelViews();
    mountDevices();
    mountPrivateFolders();
    for (std::size_t i = 0; i < keptFolders.size(); ++i) {
        bindKeptFolder(keptFolders[i], descriptors[i]);
    }
    if (umount2(host.c_str(), MNT_DETACH) != 0) {
        fail("leaving the host's root");
    }
}

} // namespace SandboxRoot
