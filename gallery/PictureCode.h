#pragma once

#include <QByteArray>
#include <QString>

// What an exported picture carries besides its pixels, so it can be opened again to remix.
struct PictureCode
{
    QString code;
    QString title;
    QString companion;
};

// `png` with the program, the title and the companion added as UTF-8 text chunks (iTXt) just
// after the header; every other byte, and so the picture, stays as it was.
QByteArray embedPictureCode(const QByteArray &png, const PictureCode &picture);

struct PictureReading
{
    // Foreign: a whole PNG without a program of ours. Broken: not a PNG, cut short or damaged.
    enum Status { Read, Foreign, Broken };
    Status status = Broken;
    PictureCode picture;
};

// Walks every chunk of `file` (checksums included) up to its end and reads the program back.
PictureReading readPictureCode(const QByteArray &file);
