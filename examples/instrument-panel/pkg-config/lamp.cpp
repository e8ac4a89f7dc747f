// lamp OUT.png: a lit lamp and a segment readout on a form, drawn headless into OUT.png.
#include "indicators/Qled.h"
#include "indicators/Qseg.h"
#include "package/Package.h"
#include "platform/controls/Application.h"
#include "platform/graphics/Bitmap.h"

#include <cstdio>

using namespace qv;

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUT.png\n", argv[0]);
        return 2;
    }
    InitializePackage();
    {
        TForm form(nullptr);
        form.SetBounds(0, 0, 200, 60);
        auto* lamp = new TqLed(&form);
        lamp->SetParent(&form);
        lamp->SetBounds(12, 20, 17, 17);
        lamp->writeLedOn(true);
        auto* readout = new TqSegmentLabel(&form);
        readout->SetParent(&form);
        readout->SetBounds(40, 14, 114, 29);
        readout->SetCaption("READY");
        form.Show();
        Application().ProcessMessages();
        TBitmap shot;
        form.Screenshot(shot);
        shot.SaveToFile(argv[1]);
    }
    FinalizePackage();
    return 0;
}
