#pragma once

#include <QFile>
#include <QStringList>
#include <QTest>

// The cases of a golden file beside a test: one per line, fields split at " | ", "\n" standing for a
// line break; blank lines and lines starting with # are skipped. A line with another number of
// fields fails the test, so that no case is silently lost.
inline QList<QStringList> goldenRows(const QString &file, qsizetype fields)
{
    QList<QStringList> rows;
    QFile source(QStringLiteral(TEST_DATA "/") + file);
    if (!source.open(QIODevice::ReadOnly | QIODevice::Text))
        qFatal("cannot read %s", qPrintable(source.fileName()));
    for (const QString &line : QString::fromUtf8(source.readAll()).split(u'\n')) {
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        QStringList row = line.split(QStringLiteral(" | "));
        if (row.size() != fields)
            qFatal("%s: not %d fields: %s", qPrintable(file), int(fields), qPrintable(line));
        for (QString &field : row)
            field.replace(QStringLiteral("\\n"), QStringLiteral("\n"));
        rows.append(row);
    }
    return rows;
}
