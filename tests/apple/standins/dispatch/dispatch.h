// The main queue alone; StandinDrainMainQueue() runs what waits on it.
#pragma once

#include "../Export.h"

typedef struct dispatch_queue_s* dispatch_queue_t;
typedef void (^dispatch_block_t)(void);

STANDIN_EXPORT dispatch_queue_t dispatch_get_main_queue(void);
STANDIN_EXPORT void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
