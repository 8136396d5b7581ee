#include "ui/components/Glow.h"
