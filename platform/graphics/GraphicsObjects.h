#pragma once
// TPen, TBrush and TFont: the drawing tools of a canvas. Each is a TPersistent with published
// properties, Assign, and an OnChange event raised after every effective change.

#include "Color.h"
#include "PixelBuffer.h"

#include "platform/core/Persistent.h"
#include "platform/core/Set.h"
#include "platform/core/TypeInfo.h"

#include <cstdint>
#include <memory>
#include <string>

namespace qv {

class TBitmap;

enum TPenStyle { psSolid, psDash, psDot, psDashDot, psDashDotDot, psClear, psInsideFrame };
enum TPenMode {
    pmBlack,
    pmWhite,
    pmNop,
    pmNot,
    pmCopy,
    pmNotCopy,
    pmMergePenNot,
    pmMaskPenNot,
    pmMergeNotPen,
    pmMaskNotPen,
    pmMerge,
    pmNotMerge,
    pmMask,
    pmNotMask,
    pmXor,
    pmNotXor,
};
enum TBrushStyle {
    bsSolid,
    bsClear,
    bsHorizontal,
    bsVertical,
    bsFDiagonal,
    bsBDiagonal,
    bsCross,
    bsDiagCross,
};
enum TFontStyle { fsBold, fsItalic, fsUnderline, fsStrikeOut };
using TFontStyles = TSet<TFontStyle>;
enum TFontPitch { fpDefault, fpVariable, fpFixed };
enum TFontQuality {
    fqDefault,
    fqDraft,
    fqProof,
    fqNonAntialiased,
    fqAntialiased,
    fqClearType,
    fqClearTypeNatural,
};
using TFontCharset = std::uint8_t;
constexpr TFontCharset DEFAULT_CHARSET = 1;

QV_ENUM_TYPE(TPenStyle, "psSolid", "psDash", "psDot", "psDashDot", "psDashDotDot", "psClear",
             "psInsideFrame")
QV_ENUM_TYPE(TPenMode, "pmBlack", "pmWhite", "pmNop", "pmNot", "pmCopy", "pmNotCopy",
             "pmMergePenNot", "pmMaskPenNot", "pmMergeNotPen", "pmMaskNotPen", "pmMerge",
             "pmNotMerge", "pmMask", "pmNotMask", "pmXor", "pmNotXor")
QV_ENUM_TYPE(TBrushStyle, "bsSolid", "bsClear", "bsHorizontal", "bsVertical", "bsFDiagonal",
             "bsBDiagonal", "bsCross", "bsDiagCross")
QV_ENUM_TYPE(TFontStyle, "fsBold", "fsItalic", "fsUnderline", "fsStrikeOut")
QV_SET_TYPE(TFontStyles, TFontStyle)
QV_ENUM_TYPE(TFontPitch, "fpDefault", "fpVariable", "fpFixed")
QV_ENUM_TYPE(TFontQuality, "fqDefault", "fqDraft", "fqProof", "fqNonAntialiased", "fqAntialiased",
             "fqClearType", "fqClearTypeNatural")

// The ROP2 code of a pen mode.
int PenModeToRop2(TPenMode mode);

// Base of the drawing tools: OnChange after each change.
class TGraphicsObject : public TPersistent {
    QV_OBJECT
public:
    TNotifyEvent OnChange;
    // How many changes there have been: lets an owner see a change without handling OnChange.
    std::uint64_t ChangeCount() const { return m_changeCount; }

protected:
    void Changed();

private:
    std::uint64_t m_changeCount{0};
};

class TPen : public TGraphicsObject {
    QV_OBJECT
public:
    TColor Color() const { return m_color; }
    void SetColor(TColor value);
    TPenMode Mode() const { return m_mode; }
    void SetMode(TPenMode value);
    TPenStyle Style() const { return m_style; }
    void SetStyle(TPenStyle value);
    int Width() const { return m_width; }
    void SetWidth(int value);

    void Assign(const TPersistent& Source) override;

private:
    TColor m_color{clBlack};
    TPenMode m_mode{pmCopy};
    TPenStyle m_style{psSolid};
    int m_width{1};
};

class TBrush : public TGraphicsObject {
    QV_OBJECT
public:
    TColor Color() const { return m_color; }
    void SetColor(TColor value);
    TBrushStyle Style() const { return m_style; }
    void SetStyle(TBrushStyle value);
    // A pattern bitmap tiled from the canvas origin; not owned. Its pixels are taken when it
    // is set; null returns to the plain brush.
    TBitmap* Bitmap() const { return m_bitmap; }
    void SetBitmap(TBitmap* value);
    // The pattern's pixels while a bitmap is set.
    const std::shared_ptr<const TPixelBuffer>& Pattern() const { return m_pattern; }
    bool PatternIsMonochrome() const { return m_monochrome; }

    void Assign(const TPersistent& Source) override;

private:
    TColor m_color{clWhite};
    TBrushStyle m_style{bsSolid};
    TBitmap* m_bitmap{nullptr};
    std::shared_ptr<const TPixelBuffer> m_pattern;
    bool m_monochrome{false};
};

class TFont : public TGraphicsObject {
    QV_OBJECT
public:
    static constexpr int PixelsPerInch = 96;

    TFontCharset Charset() const { return m_charset; }
    void SetCharset(TFontCharset value);
    TColor Color() const { return m_color; }
    void SetColor(TColor value);
    // Negative: the em height in pixels; positive: the cell height (em plus internal leading).
    int Height() const { return m_height; }
    void SetHeight(int value);
    const std::string& Name() const { return m_name; }
    void SetName(const std::string& value);
    TFontPitch Pitch() const { return m_pitch; }
    void SetPitch(TFontPitch value);
    // Points at 96 pixels per inch.
    int Size() const;
    void SetSize(int value);
    TFontStyles Style() const { return m_style; }
    void SetStyle(TFontStyles value);
    TFontQuality Quality() const { return m_quality; }
    void SetQuality(TFontQuality value);

    void Assign(const TPersistent& Source) override;

private:
    TFontCharset m_charset{DEFAULT_CHARSET};
    TColor m_color{clWindowText};
    int m_height{-11};
    std::string m_name{"MS Sans Serif"};
    TFontPitch m_pitch{fpDefault};
    TFontStyles m_style;
    TFontQuality m_quality{fqDefault};
};

} // namespace qv
