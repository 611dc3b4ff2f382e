// Identifiers of the customer list's dialog.
#pragma once

#define IDD_CUSTOMERS 100
#define IDC_SEARCH_LABEL 101
#define IDC_SEARCH 102
#define IDC_CUSTOMERS 103
