#include "mainwindow/PictureFiles.h"

#include <QCoreApplication>

QStringList pictureFilters() {
    return {QCoreApplication::translate(
                "PictureFiles",
                "Pictures (*.png *.jpg *.jpeg *.tif *.tiff *.gif *.bmp *.webp *.icns *.svg *.svgz)"),
            QCoreApplication::translate("PictureFiles", "All files (*)")};
}
