#include "app/Studio.h"

#include "gallery/CreationCodec.h"
#include "language/LogoError.h"
#include "language/LogoParser.h"
#include "profile/NameRules.h"
#include "profile/PreferencesStore.h"

namespace {

constexpr int maxTitleLength = 80;

} // namespace

void Studio::saveCreation()
{
    const QString title = m_creationTitle.trimmed();
    if (title.isEmpty())
        return;
    if (m_running || m_drawingSource.isEmpty() || m_drawingSource != m_code) {
        setSaving(false);
        setMessage(QStringLiteral("Run your latest code all the way through before saving."));
        return;
    }
    Creation creation;
    creation.title = leftCharacters(title, maxTitleLength);
    creation.code = m_code;
    creation.turtle = m_turtle;
    creation.theme = m_theme;
    creation.strokes = m_drawing.strokes;

    QList<Creation> creations{creation};
    creations.append(m_creations);
    if (m_creationsData.isEmpty())
        m_creationsData = encodeCreations(m_creations);
    const QByteArray data = prependCreation(creation, m_creationsData);
    if (!m_defaults.setData(QStringLiteral("creations"), data)) {
        setMessage(QStringLiteral("I couldn't save this drawing. Please try again."));
        return;
    }
    setCreations(creations);
    m_creationsData = data;
    setSaving(false);
    setMessage(QStringLiteral("‘") + creation.title + QStringLiteral("’ is safe in your gallery."));
}

void Studio::openCreation(const Creation &creation)
{
    enterFree();
    setCode(creation.code);
    setTurtle(creation.turtle);
    setTheme(creation.theme);
    setPlannedStrokes(creation.strokes);
    setDrawingSource(m_code);
    resetDrawing();
    try {
        LogoParser parser(m_code);
        for (const Instruction &instruction : parser.parse())
            apply(instruction);
    } catch (const LogoError &) {
        // A program that no longer parses opens on an empty canvas, ready to be fixed.
    }
    setGallery(false);
    setMessage(QStringLiteral("Opened ‘") + creation.title + QStringLiteral("’. Remix it and save a new copy."));
}
