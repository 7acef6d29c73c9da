// SPDX-License-Identifier: MIT
// Shows a document in any form, and edits it: record_window [FILE]

#include "RecordWindow.h"

#include "documents/Document.h"
#include "documents/DocumentError.h"
#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <QtCore/QFile>
#include <QtWidgets/QApplication>

#include <iostream>

namespace {

std::unique_ptr<MODELKIT::IMKObject> recordIn(const QString& name)
{
    if (name.isEmpty())
        return std::make_unique<PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml>();
    QFile file(name);
    if (file.open(QIODevice::ReadOnly)) {
        const QByteArray bytes = file.readAll();
        if (file.error() == QFileDevice::NoError)
            return ROUTERDOCUMENTS::ReadDocument(bytes).record;
    }
    std::cerr << name.toStdString() << ": " << file.errorString().toStdString() << std::endl;
    return nullptr;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QString name = QApplication::arguments().value(1);
    try {
        const auto record = recordIn(name);
        if (!record)
            return 1;
        RecordWindow window(*record);
        window.setWindowTitle(name.isEmpty() ? QStringLiteral("New document") : name);
        window.show();
        return QApplication::exec();
    } catch (const ROUTERDOCUMENTS::DocumentError& error) {
        std::cerr << name.toStdString() << ": " << error.what() << std::endl;
        return 1;
    }
}
