#include "app/Studio.h"

#include "curriculum/Missions.h"
#include "curriculum/Themes.h"
#include "gallery/PictureCode.h"
#include "gallery/PictureExport.h"
#include "language/LogoError.h"

#include <QFile>
#include <QtConcurrent/QtConcurrentRun>

namespace {

// Far above any picture we export; a bigger file is not one of ours and is not read whole.
constexpr qint64 maxPictureBytes = 64 * 1024 * 1024;

} // namespace

QByteArray Studio::pngData() const
{
    return pngEncoder()();
}

std::function<QByteArray()> Studio::pngEncoder() const
{
    PictureCode picture;
    picture.code = m_code;
    picture.title = m_free ? QStringLiteral("The imagination station") : missions().at(m_mission).title;
    picture.companion = turtleName();
    return [picture, strokes = m_drawing.strokes, background = themes().at(m_theme).color] {
        return embedPictureCode(pictureData(strokes, background), picture);
    };
}

bool Studio::prepareExport()
{
    if (!m_drawing.strokes.isEmpty())
        return true;
    setMessage(QStringLiteral("Draw something first, then export your picture."));
    return false;
}

// The save dialog has already asked where: an empty path means the child cancelled.
void Studio::exportPNG(const QString &path)
{
    exportPicture(path, pngEncoder());
}

void Studio::exportSVG(const QString &path)
{
    exportPicture(path, [strokes = m_drawing.strokes, background = themes().at(m_theme).color] {
        return drawingSvg(strokes, background);
    });
}

// Painted, encoded and written apart, so the window keeps drawing meanwhile; `encode` works on
// copies of the drawing as it was asked for.
void Studio::exportPicture(const QString &path, std::function<QByteArray()> encode)
{
    if (!prepareExport() || path.isEmpty())
        return;
    QFuture<QString> told = QtConcurrent::run(&m_exports, [path, encode = std::move(encode)] {
        QByteArray bytes;
        try {
            bytes = encode();
        } catch (const LogoError &error) {
            return error.errorDescription();
        }
        if (!writePicture(path, bytes))
            return QStringLiteral("I couldn't save there. Try another folder.");
        return QStringLiteral("Your picture is exported!");
    });
    told.then(this, [this](const QString &message) { setMessage(message); });
}

void Studio::openPicture(const QString &path)
{
    QFile file(path);
    const QByteArray data = file.open(QIODevice::ReadOnly) ? file.read(maxPictureBytes) : QByteArray();
    const PictureReading reading = readPictureCode(data);
    if (reading.status == PictureReading::Foreign) {
        setMessage(QStringLiteral("That picture has no Marble Cove code inside. Try one you exported from Marble Cove."));
        return;
    }
    if (reading.status != PictureReading::Read) {
        setMessage(QStringLiteral("I couldn't open that file. Try a picture you exported from Marble Cove."));
        return;
    }
    Creation creation;
    creation.title = reading.picture.title.isEmpty() ? QStringLiteral("your picture") : reading.picture.title;
    creation.code = reading.picture.code;
    creation.turtle = m_turtle;
    const qsizetype companion = shownNames().indexOf(reading.picture.companion);
    if (companion >= 0 && isTurtleUnlocked(int(companion)))
        creation.turtle = int(companion);
    creation.theme = m_theme;
    creation.strokes = simulate(creation.code);
    openCreation(creation);
}
