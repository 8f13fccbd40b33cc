// 03d  Object names: reads the text of a multi-property name.
//
// A name is properties in braces, such as "{tagName='A' title?='Go*' container={tagName='DIV'}}": each a name, an
// operator ("=" strict, "?=" wildcard, "~=" regular expression) and a value, which is a quoted text or a name in turn.
// Inside quotes a backslash takes the next character literally. Blanks and tabs separate properties.
//
// Defines  window.top.__ostrel.parseMultiPropertyName, __ostrel__nameParserStates, __ostrel__startNameProperty,
//          __ostrel__expectNamePropertyValue, __ostrel__typedNameValue
// Calls    Ostrel (23-extension-interface)
// At load  assigns the parser

/**
 * Reads a multi-property name. The text may end anywhere, even without its closing brace, and what follows a closing
 * brace is read as further properties.
 * @param {string} nameStr
 * @return {Ostrel.ObjectName|undefined} nothing for bad syntax
 */
window.top.__ostrel.parseMultiPropertyName = function (nameStr) {
    var parser = {
            text: nameStr,
            at: 0,
            name: new Ostrel.ObjectName(),
            propName: "",
            operator: "",
            value: "",
            depth: 0
        },
        state = "Start";

    for (; parser.at < nameStr.length; parser.at++) {
        state = __ostrel__nameParserStates[state](parser, nameStr.charAt(parser.at));
        if (!state) {
            return undefined;
        }
    }
    return parser.name;
};

/**
 * The states of the parser: each takes a character and gives the next state, or nothing when the character must not
 * stand there.
 */
var __ostrel__nameParserStates = {
    /** In front of the opening brace. */
    Start: function (parser, c) {
        return c === "{" ? __ostrel__startNameProperty(parser, "") : undefined;
    },

    /** In the name of a property, up to its operator. */
    PropName: function (parser, c) {
        switch (c) {
        case "=":
            return __ostrel__expectNamePropertyValue(parser, c);
        case "?":
        case "~":
            parser.at++;
            return parser.text.charAt(parser.at) === "=" ? __ostrel__expectNamePropertyValue(parser, c) : undefined;
        case " ":
        case "\t":
            return undefined;
        }
        parser.propName += c;
        return "PropName";
    },

    /** Behind an operator. */
    PropValue: function (parser, c) {
        if (c === "'") {
            return "PropValueString";
        }
        if (c === "{") {
            parser.depth = 1;
            parser.value = c;
            return "PropValueObject";
        }
        return undefined;
    },

    /** Inside quotes. */
    PropValueString: function (parser, c) {
        if (c === "'") {
            parser.name.addProperty(parser.propName, __ostrel__typedNameValue(parser));
            return "Separator";
        }
        if (c === "\\") {
            parser.at++;
            c = parser.text.charAt(parser.at);
        }
        parser.value += c;
        return "PropValueString";
    },

    /** Inside the braces of a nested name. The operator in front of it does not count. */
    PropValueObject: function (parser, c) {
        var isEscaped = parser.text.charAt(parser.at - 1) === "\\",
            nested;

        parser.value += c;
        if (c === "{" && !isEscaped) {
            parser.depth++;
        } else if (c === "}" && !isEscaped) {
            parser.depth--;
        }
        if (parser.depth > 0) {
            return "PropValueObject";
        }
        nested = window.top.__ostrel.parseMultiPropertyName(parser.value);
        if (nested) {
            parser.name.addProperty(parser.propName, nested);
        }
        return "Separator";
    },

    /** Behind a value. */
    Separator: function (parser, c) {
        return c === " " || c === "\t" || c === "}" ? "Separator" : __ostrel__startNameProperty(parser, c);
    }
};

/**
 * Begins a property.
 * @param {Object} parser
 * @param {string} propName what of its name has been read
 * @return {string} the next state
 */
function __ostrel__startNameProperty(parser, propName) {
    parser.propName = propName;
    return "PropName";
}

/**
 * Takes in the operator of a property.
 * @param {Object} parser
 * @param {string} operator
 * @return {string} the next state
 */
function __ostrel__expectNamePropertyValue(parser, operator) {
    parser.operator = operator;
    parser.value = "";
    return "PropValue";
}

/**
 * The value that the parser has read, of the class that stands for its operator.
 * @param {Object} parser
 * @return {string|Ostrel.RegExPropertyValue|Ostrel.WildCardPropertyValue}
 */
function __ostrel__typedNameValue(parser) {
    switch (parser.operator) {
    case "~":
        return new Ostrel.RegExPropertyValue(parser.value);
    case "?":
        return new Ostrel.WildCardPropertyValue(parser.value);
    }
    return parser.value;
}
