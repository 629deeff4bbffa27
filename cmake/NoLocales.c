// Stands in for the conversions between texts of bytes and std::filesystem::path, which go by the system's locale. The
// control names its files by wide texts only (base/FilePath.h), yet the standard library keeps them beside the rest of
// the class, and they bring all of its locales with them: 600 KiB and 2,000 places that the loader has to change.
// tests/architecture/check-products refuses a control whose own code has such a conversion.
#include <stdlib.h>

static __attribute__((used)) void kw_no_locale(void) { abort(); }

#ifdef _WIN64
#define KW_SYMBOL ""
#define KW_SIZE "y"
#else
#define KW_SYMBOL "_"
#define KW_SIZE "j"
#endif
#define KW_WITHOUT(name) __asm__(".globl " KW_SYMBOL name "\n.set " KW_SYMBOL name ", " KW_SYMBOL "kw_no_locale");
#define KW_WITHOUT_FACET(name)                     \
  KW_WITHOUT(name "10do_unshiftERiPcS2_RS2_")      \
  KW_WITHOUT(name "11do_encodingEv")               \
  KW_WITHOUT(name "13do_max_lengthEv")             \
  KW_WITHOUT(name "16do_always_noconvEv")          \
  KW_WITHOUT(name "5do_inERiPKcS3_RS3_PwS5_RS5_")  \
  KW_WITHOUT(name "6do_outERiPKwS3_RS3_PcS5_RS5_") \
  KW_WITHOUT(name "9do_lengthERiPKcS3_" KW_SIZE)

KW_WITHOUT_FACET("_ZNKSt7codecvtIwciE")
KW_WITHOUT_FACET("_ZNKSt25__codecvt_utf8_utf16_baseIwE")
KW_WITHOUT("_ZNSt25__codecvt_utf8_utf16_baseIwED2Ev")
KW_WITHOUT("_ZNSt7codecvtIwciEC2E" KW_SIZE)
KW_WITHOUT("_ZNSt7codecvtIwciED2Ev")
KW_WITHOUT("_ZSt9use_facetISt7codecvtIwciEERKT_RKSt6locale")
