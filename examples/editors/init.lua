-- Has Neovim ask mmq about expressions and rules.
local client
vim.api.nvim_create_autocmd({ "BufReadPost", "BufNewFile" }, {
  pattern = { "*.mmq", "*/rules/*.yaml" },
  callback = function(event)
    client = client or vim.lsp.start_client({
      name = "mmq",
      cmd = { "mmq", "lsp", "--model", "shop.uml" },
      root_dir = vim.fn.getcwd(),
    })
    vim.lsp.buf_attach_client(event.buf, client)
    vim.bo[event.buf].omnifunc = "v:lua.vim.lsp.omnifunc"
  end,
})
