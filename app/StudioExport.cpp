#include "app/Studio.h"

#include "curriculum/Missions.h"
#include "curriculum/Themes.h"
#include "gallery/PictureCode.h"
#include "gallery/PictureExport.h"
#include "language/LogoError.h"

#include <QFile>

namespace {

// Far above any picture we export; a bigger file is not one of ours and is not read whole.
constexpr qint64 maxPictureBytes = 64 * 1024 * 1024;

} // namespace

QByteArray Studio::pngData() const
{
    PictureCode picture;
    picture.code = m_code;
    picture.title = m_free ? QStringLiteral("The imagination station") : missions().at(m_mission).title;
    picture.companion = turtleName();
    return embedPictureCode(pictureData(m_drawing.strokes, themes().at(m_theme).color), picture);
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
    exportPicture(path, [this] { return pngData(); });
}

void Studio::exportSVG(const QString &path)
{
    exportPicture(path, [this] { return drawingSvg(m_drawing.strokes, themes().at(m_theme).color); });
}

void Studio::exportPicture(const QString &path, const std::function<QByteArray()> &encode)
{
    if (!prepareExport() || path.isEmpty())
        return;
    QByteArray bytes;
    try {
        bytes = encode();
    } catch (const LogoError &error) {
        setMessage(error.errorDescription());
        return;
    }
    if (!writePicture(path, bytes)) {
        setMessage(QStringLiteral("I couldn't save there. Try another folder."));
        return;
    }
    setMessage(QStringLiteral("Your picture is exported!"));
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
