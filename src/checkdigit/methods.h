// The check-digit methods of the Deutsche Bundesbank. The routine of a method stands in the file named after
// its ten: B8 in methods_B0_B9.cpp. Each gets a normalised account (see arithmetic.h).
//
// Deliberate: accounts that a method exempts from the check are "not checkable", also where the published
// text counts them as right. Method 95 is the exception (callers rely on both).
#pragma once

#include "checkdigit/arithmetic.h"

namespace velmora {

using MethodRoutine = CheckResult (*)(const char* account);

CheckResult method_00(const char* account);
CheckResult method_01(const char* account);
CheckResult method_02(const char* account);
CheckResult method_03(const char* account);
CheckResult method_04(const char* account);
CheckResult method_05(const char* account);
CheckResult method_06(const char* account);
CheckResult method_07(const char* account);
CheckResult method_08(const char* account);
CheckResult method_09(const char* account);

CheckResult method_10(const char* account);
CheckResult method_11(const char* account);
CheckResult method_13(const char* account);
CheckResult method_14(const char* account);
CheckResult method_15(const char* account);
CheckResult method_16(const char* account);
CheckResult method_17(const char* account);
CheckResult method_18(const char* account);
CheckResult method_19(const char* account);

CheckResult method_20(const char* account);
CheckResult method_21(const char* account);
CheckResult method_22(const char* account);
CheckResult method_23(const char* account);
CheckResult method_24(const char* account);
CheckResult method_25(const char* account);
CheckResult method_26(const char* account);
CheckResult method_27(const char* account);
CheckResult method_28(const char* account);
CheckResult method_29(const char* account);

CheckResult method_30(const char* account);
CheckResult method_31(const char* account);
CheckResult method_32(const char* account);
CheckResult method_33(const char* account);
CheckResult method_34(const char* account);
CheckResult method_38(const char* account);

CheckResult method_40(const char* account);
CheckResult method_41(const char* account);
CheckResult method_42(const char* account);
CheckResult method_43(const char* account);
CheckResult method_44(const char* account);
CheckResult method_45(const char* account);
CheckResult method_46(const char* account);
CheckResult method_47(const char* account);
CheckResult method_48(const char* account);
CheckResult method_49(const char* account);

CheckResult method_50(const char* account);
CheckResult method_51(const char* account);
CheckResult method_55(const char* account);
CheckResult method_56(const char* account);
CheckResult method_57(const char* account);
CheckResult method_58(const char* account);
CheckResult method_59(const char* account);

CheckResult method_60(const char* account);
CheckResult method_61(const char* account);
CheckResult method_63(const char* account);
CheckResult method_64(const char* account);
CheckResult method_65(const char* account);
CheckResult method_66(const char* account);
CheckResult method_67(const char* account);
CheckResult method_68(const char* account);

CheckResult method_71(const char* account);
CheckResult method_73(const char* account);
CheckResult method_74(const char* account);
CheckResult method_75(const char* account);
CheckResult method_76(const char* account);
CheckResult method_78(const char* account);

CheckResult method_81(const char* account);
CheckResult method_84(const char* account);
CheckResult method_85(const char* account);
CheckResult method_87(const char* account);
CheckResult method_88(const char* account);

CheckResult method_90(const char* account);
CheckResult method_91(const char* account);
CheckResult method_92(const char* account);
CheckResult method_93(const char* account);
CheckResult method_94(const char* account);
CheckResult method_95(const char* account);
CheckResult method_96(const char* account);
CheckResult method_98(const char* account);
CheckResult method_99(const char* account);

CheckResult method_A1(const char* account);
CheckResult method_A2(const char* account);
CheckResult method_A3(const char* account);
CheckResult method_A4(const char* account);
CheckResult method_A5(const char* account);
CheckResult method_A6(const char* account);
CheckResult method_A7(const char* account);
CheckResult method_A8(const char* account);
CheckResult method_A9(const char* account);

CheckResult method_B1(const char* account);
CheckResult method_B2(const char* account);
CheckResult method_B3(const char* account);
CheckResult method_B5(const char* account);
CheckResult method_B7(const char* account);
CheckResult method_B8(const char* account);
CheckResult method_B9(const char* account);

CheckResult method_C1(const char* account);
CheckResult method_C2(const char* account);
CheckResult method_C3(const char* account);
CheckResult method_C4(const char* account);
CheckResult method_C5(const char* account);
CheckResult method_C6(const char* account);
CheckResult method_C7(const char* account);
CheckResult method_C8(const char* account);
CheckResult method_C9(const char* account);

CheckResult method_D0(const char* account);
CheckResult method_D1(const char* account);
CheckResult method_D2(const char* account);
CheckResult method_D3(const char* account);
CheckResult method_D4(const char* account);
CheckResult method_D5(const char* account);
CheckResult method_D6(const char* account);
CheckResult method_D7(const char* account);
CheckResult method_D8(const char* account);
CheckResult method_D9(const char* account);

CheckResult method_E0(const char* account);
CheckResult method_E1(const char* account);
CheckResult method_E2(const char* account);
CheckResult method_E3(const char* account);
CheckResult method_E4(const char* account);

// Checked with the bank code only; its digits are part of the computation. It has exactly eight characters.
CheckResult method_52(const char* account, const char* bank_code);
CheckResult method_53(const char* account, const char* bank_code);
CheckResult method_B6(const char* account, const char* bank_code);
CheckResult method_C0(const char* account, const char* bank_code);

} // namespace velmora
