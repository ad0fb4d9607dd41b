// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the device inventory on lsblk outputs of several lengths; fails when the cost does not grow linearly or a
// look-up is too slow.
#include "utils/devicesnapshot.h"
#include "utils/devicetree.h"
#include "utils/lsblkpairs.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int rounds = 51;
constexpr int lookups = 10000;
constexpr double highestRatio = 12;        // 1,000 devices against 100
constexpr double highestMicroseconds = 20; // a look-up among 1,000

QString line(const QString& kname, const QString& parent, const QString& type, const QString& fsType, int number)
{
    return uR"(NAME="%1" KNAME="%1" LABEL="label %5" UUID="%6" TYPE="%3" FSTYPE="%4" SIZE="1073741824" FSUSED="1" )"
           uR"(FSAVAIL="2" LOG-SEC="512" PHY-SEC="4096" MOUNTPOINT="/mnt/%5" MODEL="Model" RO="0" HOTPLUG="0" )"
           uR"(MAJ:MIN="8:%5" PARTLABEL="part %5" PARTUUID="p-%6" PKNAME="%2" PATH="/dev/%1" VENDOR="Vendor" )"
           uR"(SERIAL="S%5" REV="1" ROTA="0")"_s.arg(kname, parent, type, fsType)
               .arg(number)
               .arg(number, 8, 16, QChar(u'0'))
        + u'\n';
}

/// Groups of five: disk, LUKS partition, opened mapping with a physical volume, and two logical volumes.
QString lsblkOutput(int devices)
{
    QString output;
    for (int first = 0; first < devices; first += 5) {
        const QString disk = u"sd%1"_s.arg(first);
        const QString mapping = u"dm-%1"_s.arg(first);
        output += line(disk, {}, u"disk"_s, {}, first);
        output += line(disk + u"p1"_s, disk, u"part"_s, u"crypto_LUKS"_s, first + 1);
        output += line(mapping, disk + u"p1"_s, u"crypt"_s, u"LVM2_member"_s, first + 2);
        output += line(mapping + u"a"_s, mapping, u"lvm"_s, u"ext4"_s, first + 3);
        output += line(mapping + u"b"_s, mapping, u"lvm"_s, u"swap"_s, first + 4);
    }
    return output;
}

template <typename Work>
double medianMicroseconds(Work work)
{
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        work();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1000);
    }
    std::nth_element(times.begin(), times.begin() + rounds / 2, times.end());
    return times[rounds / 2];
}

struct Figures
{
    double parse = 0;  ///< microseconds, as the others
    double link = 0;   ///< classification and tree
    double index = 0;  ///< names of all devices
    double lookup = 0; ///< one
};

Figures measure(int devices)
{
    const QString output = lsblkOutput(devices);
    const BlockDeviceList list = parseLsblkPairs(output);
    Figures figures;
    figures.parse = medianMicroseconds([&output] { static_cast<void>(parseLsblkPairs(output)); });
    figures.link = medianMicroseconds([&list] { linkDeviceTree(classifyDevices(list)); });
    DeviceSnapshot snapshot(list);
    figures.index = medianMicroseconds([&snapshot] { snapshot.rebuildIndex(); });
    int found = 0;
    figures.lookup = medianMicroseconds([&] {
        for (int number = 0; number < lookups; ++number) {
            found += snapshot.find(u"/mnt/%1"_s.arg(number % (2 * devices))) ? 1 : 0;
        }
    }) / lookups;
    // Every second key names nothing.
    if (list.size() != devices || found != rounds * lookups / 2) {
        std::puts("the measured work was not done");
        std::exit(1);
    }
    return figures;
}

} // namespace

int main()
{
    std::printf("%8s %12s %14s %12s %12s   (medians of %d, microseconds)\n", "devices", "parse", "classify+link",
        "index", "look-up", rounds);
    double total[3] = {};
    double lookup = 0;
    const int counts[] = {10, 100, 1000};
    for (int i = 0; i < 3; ++i) {
        const Figures figures = measure(counts[i]);
        total[i] = figures.parse + figures.link;
        lookup = figures.lookup;
        std::printf("%8d %12.1f %14.1f %12.1f %12.3f\n", counts[i], figures.parse, figures.link, figures.index, lookup);
    }
    const double ratio = total[2] / total[1];
    std::printf(
        "parse, classify and link: 1000 devices take %.1f times as long as 100 (at most %.0f)\n", ratio, highestRatio);
    std::printf("look-up among 1000: %.3f microseconds (at most %.0f)\n", lookup, highestMicroseconds);
    return ratio <= highestRatio && lookup <= highestMicroseconds ? 0 : 1;
}
