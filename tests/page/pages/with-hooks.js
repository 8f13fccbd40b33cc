// Runs an action while functions stand in a hook list, and empties the list afterwards.

function withHooks(list, hooks, action) {
    list.push.apply(list, hooks);
    try {
        return action();
    } finally {
        list.length = 0;
    }
}
