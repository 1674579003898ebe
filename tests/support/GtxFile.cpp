#include "support/GtxFile.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>

bool WriteGtx(const QString& path, double south, double west, double dlat, double dlon, int rows,
              int cols, const std::vector<float>& values) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QDataStream out(&file);
    out.setByteOrder(QDataStream::BigEndian);
    out.setFloatingPointPrecision(QDataStream::DoublePrecision);
    out << south << west << dlat << dlon << qint32(rows) << qint32(cols);
    out.setFloatingPointPrecision(QDataStream::SinglePrecision);
    for (float v : values)
        out << v;
    return out.status() == QDataStream::Ok;
}
