/* Entry point of the resource-only sample modules: nothing to set up. */
int __stdcall ModuleEntry(void* module, unsigned long reason, void* reserved) {
    (void)module;
    (void)reason;
    (void)reserved;
    return 1;
}
