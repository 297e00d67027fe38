// TavlenComException: a failure that carries an HRESULT, and the helper that turns one into the throw.
#pragma once

#include <tvutil/tavlenexception.h>

class TVUTIL_API TavlenComException : public TavlenException
{
public:
    static constexpr const WCHAR* kClassName = W("TavlenComException");

    TavlenComException(HRESULT result, CXString message, ThrowSite site);
    TavlenComException(const TavlenComException& other) noexcept;
    TavlenComException& operator=(const TavlenComException& other) noexcept;
    ~TavlenComException() override;

    [[nodiscard]] HRESULT GetHresult() const noexcept;
    [[nodiscard]] const WCHAR* GetClassName() const noexcept override;

private:
    HRESULT m_result;
};

// The factory of the throw pattern.
TVUTIL_API TavlenComException GetTavlenComException(HRESULT result, CXString message, ThrowSite site);

// The library's throw with this code, whatever it is (S_FALSE can be thrown too), and an empty message.
[[noreturn]] TVUTIL_API void ThrowComException(HRESULT result, ThrowSite site);

// The same with a message: what was attempted, on what (CXString::Format).
[[noreturn]] TVUTIL_API void ThrowComException(HRESULT result, ThrowSite site, WStringView format,
                                               std::initializer_list<CXString::Argument> arguments = {});

// Throws when the result is a failure; success codes, S_FALSE among them, pass.
inline void ThrowIfFailed(HRESULT result, ThrowSite site)
{
    if (FAILED(result))
        ThrowComException(result, site);
}

// ThrowIfFailed for the methods of one source file, with the line of the check:
//
//     constexpr FailureCheck Check(kSourceFile);
//     Check(node->get_text(text.Put()), W("Class::Method"));
class FailureCheck
{
public:
    explicit constexpr FailureCheck(const WCHAR* sourceFile) noexcept : m_sourceFile(sourceFile)
    {
    }

    void operator()(HRESULT result, const WCHAR* method, int line = __builtin_LINE()) const
    {
        ThrowIfFailed(result, {method, m_sourceFile, line});
    }

private:
    const WCHAR* m_sourceFile;
};
