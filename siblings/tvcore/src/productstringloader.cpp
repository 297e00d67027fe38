#include <tvcore/productstringloader.h>

#include <tvutil/textresourceloader.h>

ProductStringLoader::ProductStringLoader(ProductData::ValueEnum controllerFamily) : m_controllerFamily(controllerFamily)
{
}

CXString ProductStringLoader::LoadStringW(std::int32_t number) const
{
    return TextResourceLoader::LoadStringW(number);
}

ProductData::ValueEnum ProductStringLoader::GetControllerFamily() const
{
    return m_controllerFamily;
}
