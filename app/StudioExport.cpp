#include "app/Studio.h"

#include "curriculum/Themes.h"
#include "gallery/PictureExport.h"
#include "language/LogoError.h"

QByteArray Studio::pngData() const
{
    return pictureData(m_drawing.strokes, themes().at(m_theme).color);
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
    if (!prepareExport() || path.isEmpty())
        return;
    QByteArray png;
    try {
        png = pngData();
    } catch (const LogoError &error) {
        setMessage(error.errorDescription());
        return;
    }
    if (!writePicture(path, png)) {
        setMessage(QStringLiteral("I couldn't save there. Try another folder."));
        return;
    }
    setMessage(QStringLiteral("Your picture is exported!"));
}
