#pragma once
// The kernel's own account of this process's memory, for the measuring tools.
#include <QByteArray>
#include <QFile>

struct ProcessMemory
{
    double residentMiB = 0; // VmRSS
    double peakMiB = 0;     // VmHWM
};

inline ProcessMemory processMemory()
{
    ProcessMemory memory;
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return memory;
    for (const QByteArray &line : status.readAll().split('\n')) {
        const auto mib = [&] { return line.simplified().split(' ').value(1).toDouble() / 1024; };
        if (line.startsWith("VmRSS:"))
            memory.residentMiB = mib();
        else if (line.startsWith("VmHWM:"))
            memory.peakMiB = mib();
    }
    return memory;
}
