// The reader of timestamps: it reads no byte outside the text, at any size, takes no more bytes
// than there are, and stays within its tables. Wide loads read eight bytes at once; texts of any
// size have a contract that says which bytes are theirs.

/*@ requires word != 0;
  @ assigns \nothing;
  @ ensures 0 <= \result <= 63;
  @*/
int __builtin_ctzll(unsigned long long word);

#include "Zem/Os/Private/ZemTimeReader.h"

// What a conversion is in C, as far as the prover does not know it.
/*@ axiomatic Conversions {
  @   axiom byte: \forall integer x; -128 <= x < 0 ==> (unsigned char)x == x + 256;
  @   axiom wrapped: \forall integer x; -4294967296 <= x < 0 ==> (ZemUint32)x == x + 4294967296;
  @   axiom negative: \forall integer x; 2147483648 <= x < 4294967296 ==> (ZemInt)x == x - 4294967296;
  @   axiom masked: \forall integer x, mask; 0 <= mask ==> 0 <= (x & mask) <= mask;
  @   axiom shifted_out: \forall integer x, n; 0 <= x < 18446744073709551616 && n >= 32 ==>
  @     (x >> n) >> n == 0;
  @   axiom zero_or_two: \forall integer x; 0 <= x < 4294967296 && (x & 4294967293) == 0 ==> x == 0 || x == 2;
  @ } */

/*@ assigns \nothing; */
static inline ZemUint64 ZemNotDigits(ZemUint64 word);
/*@ assigns \nothing; */
static inline ZemUint64 ZemNotPairs(ZemUint64 word);
/*@ assigns \nothing; */
static inline ZemUint64 ZemPairUp(ZemUint64 digits);
/*@ assigns \nothing; */
static inline ZemUint32 ZemNumberOf8(ZemUint64 digits);

/*@ requires highBits != 0;
  @ assigns \nothing;
  @ ensures 0 <= \result <= 7;
  @*/
static inline ZemUint32 ZemCountBytes(ZemUint64 highBits);

/*@ requires \valid_read(p + (0 .. 7));
  @ assigns \nothing;
  @*/
static inline ZemUint64 ZemLoad8(const char* p);

/*@ requires \valid_read(p + (0 .. 1));
  @ assigns \nothing;
  @*/
static inline ZemUint32 ZemLoad2(const char* p);

/*@ requires 8 <= size <= 9223372036854775807 && i <= size;
  @ requires \valid_read(s + (0 .. size - 1));
  @ assigns \nothing;
  @ ensures behind: i == size ==> \result == 0;
  @*/
static inline ZemUint64 ZemLoadWithin(const char* s, ZemSizeT size, ZemSizeT i);

/*@ requires century <= 2805 && yearOfCentury <= 255 && month <= 15;
  @ assigns \nothing;
  @ ensures \valid_read(\result);
  @ ensures \result->length < 32;
  @ ensures month == 0 ==> \result->length == 0;
  @ ensures -719529 <= \result->daysBefore <= 0;
  @*/
static inline const ZemCivilMonth* ZemCivilMonthIn(ZemUint32 century, ZemUint32 yearOfCentury,
                                                   ZemUint32 month);

/*@ requires century <= 2805 && yearOfCentury <= 255 && day <= 16777216;
  @ requires \valid_read(month) && -719529 <= month->daysBefore <= 0;
  @ assigns \nothing;
  @*/
static inline ZemInt ZemCivilDayOfDate(ZemUint32 century, ZemUint32 yearOfCentury,
                                       const ZemCivilMonth* month, ZemUint32 day);

/*@ requires \valid_read(s + (0 .. 18));
  @ requires \valid(x) && \separated(x, s + (0 .. 18));
  @ assigns *x;
  @ ensures \result == 0 || \result == 1;
  @ ensures \result == 1 ==> 1 <= x->month <= 12;
  @ ensures \result == 1 ==> 1 <= x->dayOfMonth <= 31;
  @*/
static inline ZemBool ZemReadDateAndTime(const char* s, ZemBool strict, ZemTimestamp_* x);

/*@ requires size <= 9223372036854775807;
  @ requires \valid_read(s + (0 .. size - 1));
  @ assigns \nothing;
  @ ensures digit: \result == 1 <==> i < size && '0' <= s[i] <= '9';
  @ ensures \result == 0 || \result == 1;
  @*/
static inline ZemBool ZemIsDigitAt(const char* s, ZemSizeT size, ZemSizeT i);

/*@ requires size <= 9223372036854775807 && i < 9223372036854775807;
  @ requires \valid_read(s + (0 .. size - 1));
  @ assigns \nothing;
  @ ensures \result == 0 || \result == 1;
  @ ensures \result == 1 ==> i >= size || !('0' <= s[i] <= '9');
  @*/
static inline ZemBool ZemMayEndAt(const char* s, ZemSizeT size, ZemSizeT i);

/*@ requires 20 <= size <= 9223372036854775807;
  @ requires \valid_read(s + (0 .. size - 1));
  @ requires \valid(nanosecs) && \separated(nanosecs, s + (0 .. size - 1));
  @ assigns *nanosecs;
  @ ensures 19 <= \result <= size;
  @*/
static inline ZemSizeT ZemReadFraction(const char* s, ZemSizeT size, ZemBool strict,
                                       ZemUint32* nanosecs);

/*@ requires size <= 9223372036854775807 && i < 9223372036854775807;
  @ requires \valid_read(s + (0 .. size - 1));
  @ assigns \nothing;
  @ ensures \result <= 100;
  @ ensures two: \result < 100 ==> i + 2 <= size;
  @*/
static inline ZemUint32 ZemTwoDigitsAt(const char* s, ZemSizeT size, ZemSizeT i);

/*@ requires i < size <= 9223372036854775000;
  @ requires \valid_read(s + (0 .. size - 1));
  @ requires \valid(offset) && \separated(offset, s + (0 .. size - 1));
  @ assigns *offset;
  @ ensures taken: \result == 0 || i + 3 <= \result <= size;
  @ ensures \result != 0 ==> -86399 <= *offset <= 86399;
  @*/
static inline ZemSizeT ZemReadOffset(const char* s, ZemSizeT size, ZemSizeT i, ZemInt* offset);

/*@ requires 8 <= size <= 9223372036854775000 && i <= size;
  @ requires \valid_read(s + (0 .. size - 1));
  @ requires \valid(offset) && \separated(offset, s + (0 .. size - 1));
  @ assigns *offset;
  @ ensures taken: \result <= size;
  @*/
static inline ZemSizeT ZemReadZone(const char* s, ZemSizeT size, ZemSizeT i, ZemBool strict,
                                   ZemInt* offset);

/*@ requires size <= 9223372036854775000;
  @ requires \valid_read(s + (0 .. size - 1));
  @ requires \valid(x) && \separated(x, s + (0 .. size - 1));
  @ assigns *x;
  @ ensures \result <= size;
  @ ensures \result != 0 ==> 1 <= x->month <= 12 && 1 <= x->dayOfMonth <= 31;
  @*/
static inline ZemSizeT ZemReadTimestamp(const char* s, ZemSizeT size, ZemBool strict,
                                        ZemTimestamp_* x);

/*@ requires size <= 9223372036854775000 && i <= size;
  @ requires \valid_read(s + (0 .. size - 1));
  @ assigns \nothing;
  @ ensures \result == 0 || \result == 1;
  @*/
static inline ZemBool ZemIsZoneAt(const char* s, ZemSizeT size, ZemSizeT i);

/*@ requires size <= 9223372036854775000;
  @ requires \valid_read(s + (0 .. size - 1));
  @ requires \valid(x) && \separated(x, s + (0 .. size - 1));
  @ assigns *x;
  @ ensures \result == 0 || 19 <= \result <= size;
  @ ensures \result != 0 ==> 1 <= x->month <= 12 && 1 <= x->dayOfMonth <= 31;
  @ ensures \result != 0 ==> x->offset == 0;
  @*/
static inline ZemSizeT ZemReadLocalTimestamp(const char* s, ZemSizeT size, ZemTimestamp_* x);
