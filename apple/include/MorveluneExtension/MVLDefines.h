// How the library's functions and constants are exported.

#ifdef __cplusplus
#define MVL_EXPORT extern "C" __attribute__((visibility("default")))
#else
#define MVL_EXPORT extern __attribute__((visibility("default")))
#endif
