#pragma once

#include <QtCore/QList>
#include <QtCore/QtGlobal>

class QImage;
struct VXTourRow;

/// The tour's table as a picture, drawn by a widget that is never shown. GUI thread.
class VXTourPicture
{
    Q_DISABLE_COPY_MOVE(VXTourPicture)

public:
    /// `theRows` must outlive this object.
    explicit VXTourPicture(const QList<VXTourRow>& theRows);

    [[nodiscard]] QImage render() const;

private:
    const QList<VXTourRow>& myRows;
};
