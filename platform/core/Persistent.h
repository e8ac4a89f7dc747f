#pragma once
// TPersistent: an object that can copy itself from another (Assign) and take part in form
// files, either through published properties or through properties it defines itself.

#include "Object.h"

namespace qv {

class TFiler;

class TPersistent : public TObject {
    QV_OBJECT
public:
    // Copies Source into this object. The default asks Source to assign itself to this
    // object (AssignTo) and raises EConvertError when neither side knows how.
    virtual void Assign(const TPersistent& Source);

    // Form files: properties that are not published (string lists, binary data) are
    // declared here with TFiler::DefineProperty or DefineBinaryProperty.
    virtual void DefineProperties(TFiler& Filer);

    // The object this one belongs to, for naming paths (Form1.Font); null by default.
    virtual TPersistent* GetOwner() const { return nullptr; }

protected:
    virtual void AssignTo(TPersistent& Dest) const;
};

} // namespace qv
