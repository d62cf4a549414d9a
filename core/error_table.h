// core/error_table.h - the fixed error codes and their texts.
//
// Applications use the table for their own objects, too, so the library itself raises few of the rows. Codes and
// spellings have been published and stay as they are.
#pragma once

namespace murv::detail
{

struct tErrorRow
{
    int m_iCode;
    char m_cText[48];
};

inline constexpr tErrorRow s_ctErrors[] = {
    {1, "[WRN] The working failed"},
    {2, "[WRN] Timeout occured"},
    {3, "[WRN] Blocking a function"},
    {0, "[OK] Succeeded"},
    {-1000, "[SYS] Fatal error"},
    {-999, "[SYS] Runtime error"},
    {-998, "[SYS] Unknown value"},
    {-997, "[SYS] Invalid value"},
    {-996, "[SYS] Bad value"},
    {-995, "[SYS] The value was not exist"},
    {-994, "[SYS] Unknown version"},
    {-993, "[SYS] Invalid memory"},
    {-992, "[SYS] The memory pointer was NULL"},
    {-991, "[SYS] Invalid parameter"},
    {-990, "[SYS] Bad parameter"},
    {-989, "[SYS] Invalid command"},
    {-988, "[SYS] Bad command"},
    {-987, "[SYS] Invalid data"},
    {-986, "[SYS] Bad data"},
    {-985, "[SYS] Could not create the thread"},
    {-984, "[SYS] Failed to close the thread"},
    {-983, "[SYS] Not exist directory"},
    {-1200, "[SOCK] WSAStartup failed"},
    {-1199, "[SOCK] Creation failed"},
    {-1198, "[SOCK] Failed to the NonBlock"},
    {-1197, "[SOCK] Failed to get the hostinfo"},
    {-1196, "[SOCK] Failed to the bind"},
    {-1195, "[SOCK] Failed to the listen"},
    {-1194, "[SOCK] Failed to the accept"},
    {-1193, "[SOCK] Failed to the connection"},
    {-1192, "[SOCK] Failed to sending the data"},
    {-1191, "[SOCK] Failed to receiving the data"},
    {-1190, "[SOCK] Failed to close"},
    {-1300, "[AUTH] The ID was not exist"},
    {-1299, "[AUTH] The ID was too short"},
    {-1298, "[AUTH] The ID was too long"},
    {-1297, "[AUTH] Invalid password"},
    {-1296, "[AUTH] The password was too short"},
    {-1295, "[AUTH] The password was too long"},
    {-1294, "[AUTH] The same account already exist"},
    {-1293, "[AUTH] Invalid domain-ID"},
    {-1292, "[AUTH] The same domain-ID already exist"},
    {-1500, "[SEC] Failed to set the key"},
    {-1499, "[SEC] Failed to the data encryption"},
    {-1498, "[SEC] Failed to the data decryption"},
    {-2000, "[NET] Unknown packet"},
    {-1999, "[NET] Fault check-sum"},
    {-1998, "[NET] Invalid CRC"},
    {-1997, "[NET] The session was not exist"},
    {-1996, "[NET] Could not make the sending packet"},
    {-1995, "[NET] "},
    {-13000, "[DB] SQL syntax error"},
};

static_assert(sizeof s_ctErrors / sizeof s_ctErrors[0] == 52, "the table has 52 rows");

// The codes that the library raises.
inline constexpr int s_ciRuntimeError = -999;
inline constexpr int s_ciNullPointer = -992;
inline constexpr int s_ciInvalidParameter = -991;
inline constexpr int s_ciBadParameter = -990;
inline constexpr int s_ciInvalidData = -987;
inline constexpr int s_ciBadData = -986;
inline constexpr int s_ciEncryptionFailed = -1499;
inline constexpr int s_ciDecryptionFailed = -1498;

}  // namespace murv::detail
