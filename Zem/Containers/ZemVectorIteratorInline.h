// Bodies of the seventeen operations of one iterator kind of the generic vector.
//
// Included once for each kind, with these defined (they are undefined at the end):
//
//   ZEM_ITERATOR          the iterator type, which is also the prefix of the operations' names
//   ZEM_ITERATOR_ELEMENT  what a dereferenced iterator is: the element type, const for const kinds
//   ZEM_ITERATOR_CONST    the element type with const
//   ZEM_ITERATOR_STEP     +1 for the forward kinds, -1 for the reverse kinds
//
// A reverse iterator designates the element before its position.

#if defined(ZEM_ITERATOR)

#define ZEM_JOIN_(a, b) a##b
#define ZEM_JOIN(a, b) ZEM_JOIN_(a, b)
#define ZEM_OP(name) ZEM_JOIN(ZEM_ITERATOR, name)
#define ZEM_DESIGNATED(x) (*(x) - (ZEM_ITERATOR_STEP < 0))

// A vector without storage has null iterators, and C does not define null + 0, which clang's
// sanitizer reports. (Nor null - null, before C2y; compilers agree that it is 0.)
#define ZEM_STEPPED(x, n) ((n) == 0 ? *(x) : *(x) + ZEM_ITERATOR_STEP * (n))

ZEM_INLINE void ZEM_OP(Destruct)(ZEM_ITERATOR* x)
{
    (void)x;
}

ZEM_INLINE ZEM_ITERATOR* ZEM_OP(ConstructCopy)(ZEM_ITERATOR* x, const ZEM_ITERATOR* y)
{
    *x = *y;
    return x;
}

ZEM_INLINE ZEM_ITERATOR* ZEM_OP(Assign)(ZEM_ITERATOR* x, const ZEM_ITERATOR* y)
{
    *x = *y;
    return x;
}

ZEM_INLINE ZemBool ZEM_OP(Swap)(ZEM_ITERATOR* x, ZEM_ITERATOR* y)
{
    ZEM_ITERATOR position = *x;
    *x = *y;
    *y = position;
    return 1;
}

ZEM_INLINE ZemBool ZEM_OP(Equal)(const ZEM_ITERATOR* x, const ZEM_ITERATOR* y)
{
    return *x == *y;
}

ZEM_INLINE ZEM_ITERATOR_ELEMENT* ZEM_OP(ContentOf)(ZEM_ITERATOR* x)
{
    return ZEM_DESIGNATED(x);
}

ZEM_INLINE ZEM_ITERATOR_CONST* ZEM_OP(ContentOfConst)(const ZEM_ITERATOR* x)
{
    return ZEM_DESIGNATED(x);
}

ZEM_INLINE ZEM_ITERATOR* ZEM_OP(ConstructExceptional)(ZEM_ITERATOR* x)
{
    *x = NULL;
    return x;
}

ZEM_INLINE ZemBool ZEM_OP(IsExceptional)(ZEM_ITERATOR x)
{
    return x == NULL;
}

ZEM_INLINE ZEM_ITERATOR* ZEM_OP(Increment)(ZEM_ITERATOR* x)
{
    *x += ZEM_ITERATOR_STEP;
    return x;
}

ZEM_INLINE ZEM_ITERATOR* ZEM_OP(Decrement)(ZEM_ITERATOR* x)
{
    *x -= ZEM_ITERATOR_STEP;
    return x;
}

ZEM_INLINE ZemBool ZEM_OP(Less)(const ZEM_ITERATOR* x, const ZEM_ITERATOR* y)
{
    return ZEM_ITERATOR_STEP < 0 ? *y < *x : *x < *y;
}

ZEM_INLINE ZEM_ITERATOR_ELEMENT* ZEM_OP(At)(ZEM_ITERATOR* x, ZEM_OP(DifferenceType) n)
{
    ZEM_ITERATOR stepped = ZEM_STEPPED(x, n);
    return ZEM_DESIGNATED(&stepped);
}

ZEM_INLINE ZEM_ITERATOR* ZEM_OP(IncrementN)(ZEM_ITERATOR* x, ZEM_OP(DifferenceType) n)
{
    *x = ZEM_STEPPED(x, n);
    return x;
}

ZEM_INLINE ZEM_ITERATOR* ZEM_OP(DecrementN)(ZEM_ITERATOR* x, ZEM_OP(DifferenceType) n)
{
    *x = ZEM_STEPPED(x, -n);
    return x;
}

ZEM_INLINE ZEM_ITERATOR ZEM_OP(Add)(ZEM_ITERATOR* x, ZEM_OP(DifferenceType) n)
{
    return ZEM_STEPPED(x, n);
}

ZEM_INLINE ZEM_OP(DifferenceType) ZEM_OP(Subtract)(ZEM_ITERATOR* x, ZEM_ITERATOR* y)
{
    return ZEM_ITERATOR_STEP * (*x - *y);
}

#undef ZEM_STEPPED
#undef ZEM_DESIGNATED
#undef ZEM_OP
#undef ZEM_JOIN
#undef ZEM_JOIN_
#undef ZEM_ITERATOR
#undef ZEM_ITERATOR_ELEMENT
#undef ZEM_ITERATOR_CONST
#undef ZEM_ITERATOR_STEP

#endif
