// SPDX-License-Identifier: MIT
#include "link/WellFormedness.h"

#include "modelkit/IMKObject.h"
#include "modelkit/XmlPlaces.h"

#include <QtCore/QXmlStreamReader>

namespace ROUTERLINK {

namespace {

// Reads any document and keeps nothing of it. So the limits of whole documents apply.
class AnyDocument : public MODELKIT::IMKObject
{
public:
    explicit AnyDocument(const QString& rootName) { SetObjectName(rootName); }

    bool HasData() const override { return true; }
    void Reset() override {}
    void Check(bool) const override {}
    void Check() const override {}
    void GetXml(QXmlStreamWriter&) const override {}
    bool GetBinary(QDataStream&, int, bool) const override { return false; }
    void SetBinary(QDataStream&, int) override {}
    // The rest of the document is read behind the start tag of the root.
    void ProcessXml(QXmlStreamReader&) override {}

protected:
    void ProcessXmlStartElement(QXmlStreamReader&) override {}
};

} // namespace

MODELKIT::Failure whyNotWellFormed(const QByteArray& xml)
{
    AnyDocument document(MODELKIT::RootNameOfXml(xml));
    if (document.SetXmlBytes(xml))
        return {};
    return MODELKIT::IMKObject::GetLastFailure();
}

} // namespace ROUTERLINK
