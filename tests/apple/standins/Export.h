// C linkage for declarations of the stand-ins.
#pragma once

#ifdef __cplusplus
#define STANDIN_EXPORT extern "C"
#else
#define STANDIN_EXPORT extern
#endif
