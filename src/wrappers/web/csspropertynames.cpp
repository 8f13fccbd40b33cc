#include "wrappers/web/csspropertynames.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

const QStringList &cssPropertyNames()
{
    static const QStringList names {
        u"alignContent"_s, u"alignItems"_s, u"alignSelf"_s, u"animation"_s, u"animationDelay"_s,
        u"animationDirection"_s, u"animationDuration"_s, u"animationFillMode"_s,
        u"animationIterationCount"_s, u"animationName"_s, u"animationPlayState"_s,
        u"animationTimingFunction"_s, u"backfaceVisibility"_s, u"background"_s,
        u"backgroundAttachment"_s, u"backgroundBlendMode"_s, u"backgroundClip"_s,
        u"backgroundImage"_s, u"backgroundOrigin"_s, u"backgroundPosition"_s, u"backgroundRepeat"_s,
        u"backgroundSize"_s, u"border"_s, u"borderBottom"_s, u"borderBottomColor"_s,
        u"borderBottomLeftRadius"_s, u"borderBottomRightRadius"_s, u"borderBottomStyle"_s,
        u"borderBottomWidth"_s, u"borderCollapse"_s, u"borderColor"_s, u"borderImage"_s,
        u"borderImageOutset"_s, u"borderImageRepeat"_s, u"borderImageSlice"_s,
        u"borderImageSource"_s, u"borderImageWidth"_s, u"borderLeft"_s, u"borderLeftColor"_s,
        u"borderLeftStyle"_s, u"borderLeftWidth"_s, u"borderRadius"_s, u"borderRight"_s,
        u"borderRightColor"_s, u"borderRightStyle"_s, u"borderRightWidth"_s, u"borderSpacing"_s,
        u"borderStyle"_s, u"borderTop"_s, u"borderTopColor"_s, u"borderTopLeftRadius"_s,
        u"borderTopRightRadius"_s, u"borderTopStyle"_s, u"borderTopWidth"_s, u"borderWidth"_s,
        u"bottom"_s, u"boxDecorationBreak"_s, u"boxShadow"_s, u"boxSizing"_s, u"breakAfter"_s,
        u"breakBefore"_s, u"breakInside"_s, u"captionSide"_s, u"caretColor"_s, u"clear"_s,
        u"clip"_s, u"columnFill"_s, u"columnGap"_s, u"columnRule"_s, u"columnRuleColor"_s,
        u"columnRuleStyle"_s, u"columnRuleWidth"_s, u"columnSpan"_s, u"columnWidth"_s, u"columns"_s,
        u"content"_s, u"counterIncrement"_s, u"counterReset"_s, u"cursor"_s, u"direction"_s,
        u"display"_s, u"emptyCells"_s, u"filter"_s, u"flex"_s, u"flexBasis"_s, u"flexDirection"_s,
        u"flexFlow"_s, u"flexGrow"_s, u"flexShrink"_s, u"flexWrap"_s, u"float"_s, u"font"_s,
        u"fontFamily"_s, u"fontFeatureSettings"_s, u"fontKerning"_s, u"fontLanguageOverride"_s,
        u"fontSize"_s, u"fontSizeAdjust"_s, u"fontStretch"_s, u"fontStyle"_s, u"fontSynthesis"_s,
        u"fontVariant"_s, u"fontVariantAlternates"_s, u"fontVariantCaps"_s,
        u"fontVariantEastAsian"_s, u"fontVariantLigatures"_s, u"fontVariantNumeric"_s,
        u"fontVariantPosition"_s, u"fontWeight"_s, u"grid"_s, u"gridArea"_s, u"gridAutoColumns"_s,
        u"gridAutoFlow"_s, u"gridAutoRows"_s, u"gridColumn"_s, u"gridColumnEnd"_s,
        u"gridColumnGap"_s, u"gridColumnStart"_s, u"gridGap"_s, u"gridRow"_s, u"gridRowEnd"_s,
        u"gridRowGap"_s, u"gridRowStart"_s, u"gridTemplate"_s, u"gridTemplateAreas"_s,
        u"gridTemplateColumns"_s, u"gridTemplateRows"_s, u"hangingPunctuation"_s, u"hyphens"_s,
        u"imageRendering"_s, u"isolation"_s, u"justifyContent"_s, u"left"_s, u"letterSpacing"_s,
        u"lineBreak"_s, u"lineHeight"_s, u"listStyle"_s, u"listStyleImage"_s,
        u"listStylePosition"_s, u"listStyleType"_s, u"margin"_s, u"marginBottom"_s, u"marginLeft"_s,
        u"marginRight"_s, u"marginTop"_s, u"mask"_s, u"maskType"_s, u"maxHeight"_s, u"maxWidth"_s,
        u"minHeight"_s, u"minWidth"_s, u"mixBlendMode"_s, u"objectFit"_s, u"objectPosition"_s,
        u"opacity"_s, u"order"_s, u"orphans"_s, u"outline"_s, u"outlineColor"_s, u"outlineOffset"_s,
        u"outlineStyle"_s, u"outlineWidth"_s, u"overflow"_s, u"overflowWrap"_s, u"overflowX"_s,
        u"overflowY"_s, u"padding"_s, u"paddingBottom"_s, u"paddingLeft"_s, u"paddingRight"_s,
        u"paddingTop"_s, u"pageBreakAfter"_s, u"pageBreakBefore"_s, u"pageBreakInside"_s,
        u"perspective"_s, u"perspectiveOrigin"_s, u"pointerEvents"_s, u"position"_s, u"quotes"_s,
        u"resize"_s, u"right"_s, u"rowGap"_s, u"scrollBehavior"_s, u"tabSize"_s, u"tableLayout"_s,
        u"textAlign"_s, u"textAlignLast"_s, u"textCombineUpright"_s, u"textDecoration"_s,
        u"textDecorationColor"_s, u"textDecorationLine"_s, u"textDecorationStyle"_s,
        u"textIndent"_s, u"textJustify"_s, u"textOrientation"_s, u"textOverflow"_s, u"textShadow"_s,
        u"textTransform"_s, u"textUnderlinePosition"_s, u"transform"_s, u"transformOrigin"_s,
        u"transformStyle"_s, u"transition"_s, u"transitionDelay"_s, u"transitionDuration"_s,
        u"transitionProperty"_s, u"transitionTimingFunction"_s, u"unicodeBidi"_s, u"userSelect"_s,
        u"verticalAlign"_s, u"visibility"_s, u"whiteSpace"_s, u"widows"_s, u"wordBreak"_s,
        u"wordSpacing"_s, u"wordWrap"_s, u"writingMode"_s, u"zIndex"_s,
    };
    return names;
}

} // namespace Ostrel::WebWrapper
