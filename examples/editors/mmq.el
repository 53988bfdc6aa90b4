;; Has Emacs ask mmq about expressions.
(define-derived-mode mmq-mode prog-mode "mmq")
(add-to-list 'auto-mode-alist '("\\.mmq\\'" . mmq-mode))
(with-eval-after-load 'eglot
  (add-to-list 'eglot-server-programs '(mmq-mode "mmq" "lsp" "--model" "shop.uml")))
(add-hook 'mmq-mode-hook #'eglot-ensure)
