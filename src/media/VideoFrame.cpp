#include "media/VideoFrame.h"
