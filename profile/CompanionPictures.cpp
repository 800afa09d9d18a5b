#include "profile/CompanionPictures.h"

#include <QPoint>
#include <QRect>

namespace {

constexpr int pictureSize = 200;

} // namespace

QList<QImage> cutCompanionPictures(const QImage &sheet)
{
    const int w = sheet.width() / 2;
    const int h = sheet.height() / 2;
    if (sheet.isNull() || w == 0 || h == 0)
        return {};
    QList<QImage> pictures;
    for (const QPoint corner : {QPoint(0, 0), QPoint(w, 0), QPoint(0, h), QPoint(w, h)}) {
        const QImage cut = sheet.copy(QRect(corner, QSize(w, h)));
        if (!cut.isNull())
            pictures.append(cut.scaled(pictureSize, pictureSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
    return pictures;
}
