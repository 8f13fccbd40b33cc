// 03b  Name properties: the properties that make up the multi-property name of each kind of element.
//
// The builders return the name without the outer escaping, and without what is added to all names: visibility,
// container, occurrence and context.
//
// Defines  __ostrel__nameOfInput, __ostrel__nameOfCMenu, __ostrel__nameOfLink, __ostrel__nameOfImage,
//          __ostrel__nameOfNamedElement, __ostrel__nameOfSpanOrDiv, __ostrel__formProperty, __ostrel__isControlOfForm,
//          __ostrel__isAnonymousLink, __ostrel__imagePropertiesOfLink, __ostrel__imageSourceProperty,
//          __ostrel__nameHelper, __ostrel__namingValue, __ostrel__propsToNameStr, __ostrel__propertyToNameStr,
//          __ostrel__fixName, __ostrel__optionallyIncludeIdPropertyInList, __ostrel__idHelper,
//          __ostrel__idWithoutGeneratedPrefix, __ostrel__idWithoutControlNumber,
//          __ostrel__escapeCharactersInPropertyValue
// Calls    __ostrel__qualifiedName (03c-hierarchical-names), __ostrel.getSimplifiedInnerText, __ostrel__clean
//          (11-text-simplification)
// At load  nothing runs

/**
 * @param {Element} o an INPUT, SELECT or BUTTON
 * @return {string}
 */
function __ostrel__nameOfInput(o) {
    var n = __ostrel__propsToNameStr(
        o, __ostrel__optionallyIncludeIdPropertyInList(["tagName", "name", "type"])) + __ostrel__formProperty(o);

    if (/^(button|submit|radio|checkbox|image)$/.test(o.type)) {
        // Browsers disagree whether the value of a BUTTON mirrors its text, and a name recorded with one browser must
        // be found with another.
        if (o.tagName !== "BUTTON") {
            // Kept as is: cleaning also takes the blank behind the value away.
            n += __ostrel__clean(__ostrel__nameHelper(o, "value"));
        }
        n += __ostrel__nameHelper(o, "simplifiedInnerText");
    }
    return "{" + __ostrel__fixName(n) + "}";
}

/**
 * @param {Element} o an entry of a popup menu
 * @return {string}
 */
function __ostrel__nameOfCMenu(o) {
    // Kept as is: elements normally have no member "class", so that it usually adds nothing.
    var props = __ostrel__optionallyIncludeIdPropertyInList(["tagName", "class", "name", "simplifiedInnerText"]);

    return "{" + __ostrel__fixName(__ostrel__propsToNameStr(o, props)) + "}";
}

/**
 * @param {Element} o an A
 * @return {string} the hierarchical name for a link that neither has a property nor holds an image
 */
function __ostrel__nameOfLink(o) {
    var props = __ostrel__optionallyIncludeIdPropertyInList(["name", "simplifiedInnerText"]),
        imageProps = "";

    if (__ostrel__isAnonymousLink(o)) {
        imageProps = __ostrel__imagePropertiesOfLink(o);
        if (!imageProps) {
            return __ostrel__qualifiedName(o);
        }
    }
    return "{" + __ostrel__fixName("tagName='A' " + __ostrel__propsToNameStr(o, props) + imageProps) + "}";
}

/**
 * True for a link that says nothing about itself.
 * @param {Element} o
 * @return {boolean}
 */
function __ostrel__isAnonymousLink(o) {
    var id = window.top.__ostrel.includeIdPropertyInGeneratedNames && o.id,
        text = __ostrel__clean(o.innerText) || "";

    return !id && !o.name && text.replace(/ /g, "") === "";
}

/**
 * The properties of the first image in a link. The address counts only when there is nothing better.
 * @param {Element} link
 * @return {string} "" when there is no image to tell the link by
 */
function __ostrel__imagePropertiesOfLink(link) {
    var img = link.getElementsByTagName("IMG")[0],
        n;

    if (!img) {
        return "";
    }
    n = __ostrel__propertyToNameStr("img_id", img.id) + __ostrel__propertyToNameStr("img_name", img.name) +
        (img.alt ? __ostrel__propertyToNameStr("img_alt", __ostrel__clean(img.alt)) : "");
    return n || __ostrel__imageSourceProperty(img);
}

/**
 * The last part of an image's address, as a pattern that leaves open where the image lies.
 * @param {Element} img
 * @return {string}
 */
function __ostrel__imageSourceProperty(img) {
    var src = img.src,
        slash;

    if (!src) {
        return "";
    }
    slash = src.lastIndexOf("/");
    if (slash !== -1) {
        src = "*" + src.substring(slash + 1);
    }
    return "img_src?='" + __ostrel__escapeCharactersInPropertyValue(__ostrel__clean(src)) + "' ";
}

/**
 * @param {Element} o an IMG
 * @return {string} the hierarchical name for an image without properties
 */
function __ostrel__nameOfImage(o) {
    var id = window.top.__ostrel.includeIdPropertyInGeneratedNames && o.id,
        n;

    if (!o.alt && !id && !o.name) {
        return __ostrel__qualifiedName(o);
    }
    n = "tagName='IMG' ";
    if (o.alt) {
        n += "img_alt='" + __ostrel__escapeCharactersInPropertyValue(__ostrel__clean(o.alt)) + "' ";
    }
    n += __ostrel__propsToNameStr(o, __ostrel__optionallyIncludeIdPropertyInList(["name"]));
    return "{" + __ostrel__fixName(n) + "}";
}

/**
 * @param {Element} o
 * @return {string}
 */
function __ostrel__nameOfNamedElement(o) {
    var props = __ostrel__optionallyIncludeIdPropertyInList(["tagName", "name", "title"]);

    return "{" + __ostrel__fixName(__ostrel__propsToNameStr(o, props)) + "}";
}

/**
 * @param {Element} o
 * @return {string}
 */
function __ostrel__nameOfSpanOrDiv(o) {
    return "{" + __ostrel__fixName(__ostrel__propsToNameStr(o, ["tagName", "simplifiedInnerText"])) + "}";
}

/**
 * The form that a control belongs to.
 * @param {Element} o
 * @return {string} "" without one, and for one whose id is hidden by a control of that name
 */
function __ostrel__formProperty(o) {
    var value;

    if (!o.form || !__ostrel__isControlOfForm(o, o.form)) {
        return "";
    }
    try {
        value = o.form.id || o.form.getAttribute("name");
        return value ? "form='" + __ostrel__escapeCharactersInPropertyValue(value) + "' " : "";
    } catch (e) {
        return "";
    }
}

/**
 * True when a form really lists a control.
 * @param {Element} o
 * @param {Element} form
 * @return {boolean}
 */
function __ostrel__isControlOfForm(o, form) {
    var i;

    for (i = 0; i < form.elements.length; i++) {
        if (form.elements[i] === o) {
            return true;
        }
    }
    return false;
}

/**
 * The text of several properties in a name.
 * @param {Element} o
 * @param {Array.<string>} props
 * @return {string} ends in a blank unless it is empty
 */
function __ostrel__propsToNameStr(o, props) {
    var n = "",
        i;

    for (i = 0; i < props.length; i++) {
        // Pages extend the prototype of arrays, and lists of extensions may have been filled from such ones.
        if (typeof props[i] !== "function") {
            n += __ostrel__nameHelper(o, props[i]);
        }
    }
    return n;
}

/**
 * The text of one property in a name.
 * @param {Element} o
 * @param {string} n the property
 * @param {string} [nm] the label in the name where that is another
 * @return {string} ends in a blank; "" when there is no value
 */
function __ostrel__nameHelper(o, n, nm) {
    return __ostrel__propertyToNameStr(nm || n, __ostrel__namingValue(o, n));
}

/**
 * The value of a property as it stands in names.
 * @param {Element} o
 * @param {string} n
 * @return {*}
 */
function __ostrel__namingValue(o, n) {
    switch (n) {
    case "id":
        return __ostrel__idHelper(o.id);
    case "innerText":
        return __ostrel__clean(o.innerText);
    case "simplifiedInnerText":
        return window.top.__ostrel.getSimplifiedInnerText(o);
    }
    return o[n];
}

/**
 * Writes one property.
 * @param {string} label
 * @param {*} value in a form, "name" and "id" may be controls of that name; the search compares with their text, too
 * @return {string}
 */
function __ostrel__propertyToNameStr(label, value) {
    return value ? label + "='" + __ostrel__escapeCharactersInPropertyValue(String(value)) + "' " : "";
}

/**
 * Takes the blank behind the last property away.
 * @param {string} n
 * @return {string}
 */
function __ostrel__fixName(n) {
    return n.replace(/ $/, "");
}

/**
 * Appends the id to a list of properties where the host wants ids in names.
 * @param {Array.<string>} list
 * @return {Array.<string>}
 */
function __ostrel__optionallyIncludeIdPropertyInList(list) {
    if (window.top.__ostrel.includeIdPropertyInGeneratedNames) {
        list.push("id");
    }
    return list;
}

/**
 * The lasting part of an id that a toolkit has generated.
 * @param {*} id
 * @return {*} what is no text comes back as it is
 */
function __ostrel__idHelper(id) {
    try {
        id = __ostrel__idWithoutGeneratedPrefix(id);
    } catch (e) {
        // The id of a form may be one of its controls.
    }
    try {
        id = __ostrel__idWithoutControlNumber(id);
    } catch (e2) {
        // As above.
    }
    return id;
}

/**
 * "x_jbg_17_name" is "name".
 * @param {string} id
 * @return {string}
 */
function __ostrel__idWithoutGeneratedPrefix(id) {
    var start = id.indexOf("jbg_");

    if (start === -1) {
        return id;
    }
    id = id.substring(start + "jbg_".length);
    return id.substring(id.indexOf("_") + 1);
}

/**
 * "grid_ctrl12_name" is "gridname".
 * @param {string} id
 * @return {string}
 */
function __ostrel__idWithoutControlNumber(id) {
    var start = id.indexOf("_ctrl"),
        end;

    if (start === -1) {
        return id;
    }
    end = id.indexOf("_", start + 1);
    return id.substring(0, start) + (end === -1 ? "" : id.substring(end + 1));
}

/**
 * Protects what would end a quoted value.
 * @param {string} input
 * @return {string}
 */
function __ostrel__escapeCharactersInPropertyValue(input) {
    return input.replace(/\\/g, "\\\\").replace(/'/g, "\\'");
}
