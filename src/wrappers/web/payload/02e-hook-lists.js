// 02  Hook lists: where extensions put the functions that take part in our decisions.
//
// Defines  __ostrel__typeOf__hooks, __ostrel__nameOf__hooks, __ostrel__matchObject__hooks,
//          __ostrel__propertyMatcherFactories, __ostrel__click__hooks, __ostrel__selectSingleOption__hooks,
//          __ostrel__eventObject__hooks, __ostrel__eventToStr__hooks, __ostrel__objectNameAndType__hooks,
//          __ostrel__eventType__hooks, __ostrel__itemTextForEvent__hooks, __ostrel__pickableObjectHooks,
//          __ostrel__useIE8AndOlderEventDispatchingOverride__hooks, __ostrel__hookInFrame__hooks,
//          __ostrel__knownWidgets
// Calls    nothing
// At load  empties every list: extensions register anew with each injection

// classification and names
window.__ostrel__typeOf__hooks = [];
window.__ostrel__nameOf__hooks = [];
window.__ostrel__objectNameAndType__hooks = [];

// search
window.__ostrel__matchObject__hooks = [];
window.__ostrel__propertyMatcherFactories = [];

// operation of elements
window.__ostrel__click__hooks = [];
window.__ostrel__selectSingleOption__hooks = [];
window.__ostrel__useIE8AndOlderEventDispatchingOverride__hooks = [];

// recording and picking
window.__ostrel__eventObject__hooks = [];
window.__ostrel__eventToStr__hooks = [];
window.__ostrel__eventType__hooks = [];
window.__ostrel__itemTextForEvent__hooks = [];
window.__ostrel__pickableObjectHooks = [];
window.__ostrel__knownWidgets = [];

// frames
window.__ostrel__hookInFrame__hooks = [];
