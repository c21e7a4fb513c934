// Bodies of the small operations of ZemAllocator.h.

#ifndef ZEM_UTILS_ZEMALLOCATORINLINE_H
#define ZEM_UTILS_ZEMALLOCATORINLINE_H

#include "Zem/Utils/ZemAllocator.h"

#if defined(ZEM_INLINE)

ZEM_BODIES_BEGIN

ZEM_INLINE ZemVoidPtr ZemAllocatorAllocate(ZemAllocator* a_, ZemSizeT s_)
{
    return a_->allocate(a_, s_);
}

ZEM_INLINE void ZemAllocatorDeallocate(ZemAllocator* a_, ZemVoidPtr p_, ZemSizeT s_)
{
    a_->deallocate(a_, p_, s_);
}

ZEM_BODIES_END

#endif

#endif
